// A group in its models again: compiled anew they are the same group, byte for byte.
#include "lib/build/taken_apart.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "lib/facs/lid_facs.h"
#include "lib/mgroup/group_format.h"
#include "lib/trichr/trichr_model.h"
#include "tests/reference/tiny_group.h"
#include "tests/support/temp_dir.h"

namespace orva {
namespace {

class TakenApartTest : public testing::Test {
 protected:
  // A model trained on text that a seed makes; models of close seeds have much in common.
  std::string train(const std::string& name, unsigned seed, float weight, int rm_digits = 1) {
    std::mt19937 random(seed / 2);
    std::string text;
    for (int i = 0; i < 3000; ++i)
      text.push_back(static_cast<char>("aeinrst, Xo\n"[random() % 12]));
    if (seed % 2 != 0) text += "\xE9t\xE9 \xE8re \xE0 no\xEBl";
    CLidFacs facs;
    EXPECT_EQ(facs.init(dir_.file("text", text).c_str(), 0, 0, -1, 1, 1, rm_digits, 0), 1);
    CTrichrModel model;
    model.build(facs, 4000, 0, weight, 0.0f, 1, 1, rm_digits, 0);
    const std::string path = dir_ / (name + ".tri");
    EXPECT_EQ(model.save(path.c_str(), weight), 0);
    return path;
  }

  std::string compile(std::vector<std::string> paths, std::vector<std::string> names,
                      std::vector<int> sets, int min_for_direct) {
    std::vector<char*> path_pointers;
    std::vector<char*> name_pointers;
    for (std::string& path : paths) path_pointers.push_back(path.data());
    for (std::string& name : names) name_pointers.push_back(name.data());
    CLidMGroup group;
    EXPECT_EQ(group.build(path_pointers.data(), name_pointers.data(), sets.data(),
                          static_cast<int>(paths.size()), min_for_direct),
              0);
    const std::string file = dir_ / "compiled.grp";
    EXPECT_EQ(group.save(file.c_str()), 0);
    return bytes_of(file);
  }

  std::string compile_again(const std::string& bytes) {
    CLidMGroup group;
    EXPECT_EQ(group.load(dir_.file("old.grp", bytes).c_str()), 0);
    const TakenApart taken(group);
    std::vector<std::string> paths;
    std::vector<std::string> names;
    std::vector<int> sets;
    for (int m = 0; m < taken.nb_models(); ++m) {
      paths.push_back(dir_ / ("again" + std::to_string(m) + ".tri"));
      names.push_back(taken.name(m));
      sets.push_back(taken.set(m));
      EXPECT_EQ(taken.write(m, paths.back()), "");
    }
    return compile(paths, names, sets, taken.min_for_direct());
  }

  TempDir dir_;
};

TEST_F(TakenApartTest, CompiledAgainAGroupIsTheSameByteForByte) {
  std::vector<std::string> paths;
  std::vector<std::string> names;
  for (unsigned m = 0; m < 9; ++m) {
    names.push_back("e" + std::to_string(m) + "UTF-8");
    paths.push_back(train(names.back(), m, m < 5 ? 0.9F : 0.99F));
  }
  for (const int min_for_direct : {4, 128}) {
    for (const std::vector<int>& sets : {std::vector<int>(9, -1), {0, 0, 1, 1, -1, 2, 2, -1, 0}}) {
      const std::string group = compile(paths, names, sets, min_for_direct);
      ASSERT_GT(group.size(), 1000U);
      EXPECT_EQ(compile_again(group), group) << min_for_direct;
    }
  }
}

TEST_F(TakenApartTest, TheShippedGroupIsTheSameToo) {
  const std::string path = std::string(ORVA_SOURCE_DIR) + "/models/Model.grp";
  const std::string group = bytes_of(path);
  if (group.empty()) GTEST_SKIP() << "no models in the tree";
  EXPECT_TRUE(compile_again(group) == group);
}

TEST_F(TakenApartTest, SwitchesAreThoseOfTheModels) {
  const std::string path = train("enUTF-8", 1, 0.9F, 0);
  CLidMGroup group;
  dir_.file("g", compile({path}, {"enUTF-8"}, {-1}, 128));
  ASSERT_EQ(group.load((dir_ / "g").c_str()), 0);
  EXPECT_EQ(TakenApart(group).switches(), "DC");
}

TEST_F(TakenApartTest, AGroupThatNoModelsMakeIsRefused) {
  const std::string path = train("enUTF-8", 1, 0.9F);
  CLidMGroup group;
  dir_.file("g", compile({path}, {"enUTF-8"}, {-1}, 128));
  ASSERT_EQ(group.load((dir_ / "g").c_str()), 0);
  CmgModel& model = group.models_part.models[0];
  const std::string out = dir_ / "out.tri";
  const float step = model.grad;
  for (const float wrong : {0.0F, -step, step * 0.0625F, HUGE_VALF, NAN}) {
    model.grad = wrong;
    EXPECT_NE(TakenApart(group).write(0, out), "") << wrong;
  }
  model.grad = step;
  EXPECT_EQ(TakenApart(group).write(0, out), "");
  group.unigram_part.models_lpmin[0] = -3;
  EXPECT_NE(TakenApart(group).write(0, out), "");
  EXPECT_NE(TakenApart(group).write(0, dir_ / "none/out.tri"), "");
}

// What no walk trusts is loaded all the same: leaves whose count is no signed byte, or that none of
// three bytes leads to.
TEST_F(TakenApartTest, AGroupThatLeadsElsewhereIsRefused) {
  const std::string path = train("enUTF-8", 1, 0.9F);
  CLidMGroup group;
  dir_.file("g", compile({path}, {"enUTF-8"}, {-1}, 128));
  const auto refused_with = [&](auto change) {
    ASSERT_EQ(group.load((dir_ / "g").c_str()), 0);
    change();
    EXPECT_EQ(group_defect(group), "");
    EXPECT_EQ(TakenApart(group).write(0, dir_ / "out.tri"), "the group was not built of models");
  };
  refused_with([&] { group.lstates[0] = 0xC87FFFFF; });
  refused_with([&] { group.lstates[0] = 0x80FFFFFF; });
  refused_with([&] {
    group.lstates[0] = 0xFF000000;
    group.lstates_vals[0] = 250;
  });
  refused_with([&] {
    int depth3 = 1;
    while (group.istates[depth3].info >> 24 == 0 ||
           state_first(group.istates[depth3].info) < group.nb_istates) {
      ++depth3;
    }
    group.istates[depth3].info = group.istates[depth3].info >> 24 << 24 | 1;
  });
}

TEST_F(TakenApartTest, CostsComeBackAsTheBytesThatStandForThem) {
  const std::string path = train("enUTF-8", 1, 0.9F);
  CLidMGroup group;
  dir_.file("g", compile({path}, {"enUTF-8"}, {-1}, 128));
  ASSERT_EQ(group.load((dir_ / "g").c_str()), 0);
  const std::string again = dir_ / "again.tri";
  ASSERT_EQ(TakenApart(group).write(0, again), "");
  CTrichrModel trained;
  CTrichrModel back;
  ASSERT_EQ(trained.load(path.c_str()), 0);
  ASSERT_EQ(back.load(again.c_str()), 0);
  ASSERT_EQ(back.nb_tri, trained.nb_tri);
  const float step = group.models_part.models[0].grad;
  for (int i = 0; i < back.nb_tri; ++i) {
    int added = 0;
    const int at = trained.find_or_add(back.key(i), &added);
    ASSERT_EQ(added, 0);
    EXPECT_NEAR(back.tri_lps[i], trained.tri_lps[at], step * 0.51F);
  }
}

}  // namespace
}  // namespace orva
