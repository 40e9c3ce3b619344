#include <gtest/gtest.h>

#include <clocale>

#include "lib/util/accounting.h"
#include "tests/trichr/trichr_fixture.h"

namespace {

using orva::load_text;
using orva::saved;
using orva::train;

std::string byte_costs() {
  std::string text;
  for (int line = 0; line < 32; ++line) {
    for (int i = 0; i < 8; ++i) text += "-1.0000 ";
    text += "\n";
  }
  return text;
}

std::string file_of(const std::string& header, const std::string& trigrams) {
  return header + "\n2.0000\n" + byte_costs() + "1.0000 2.0000\n" + trigrams;
}

std::string header_of(const std::string& file) { return file.substr(0, file.find('\n')); }

int find(const CTrichrModel& model, const char* key) {
  return model[reinterpret_cast<const unsigned char*>(key)];
}

}  // namespace

TEST(ModelFile, EmptyModelIsThisFile) {
  CTrichrModel model;
  train(model, "");
  EXPECT_EQ(saved(model, -1.0f), file_of("V25a    ", ""));
}

TEST(ModelFile, WeightIsWrittenAboveMinusAHalf) {
  CTrichrModel model;
  EXPECT_EQ(header_of(saved(model, -1.0f)), "V25a    ");
  EXPECT_EQ(header_of(saved(model, -0.5f)), "V25a    ");
  EXPECT_EQ(header_of(saved(model, 0.0f)), "V25a    \tTriW=0.000");
  EXPECT_EQ(header_of(saved(model, 0.9f)), "V25a    \tTriW=0.900");
}

TEST(ModelFile, LoadedModelIsSavedAlike) {
  CTrichrModel model;
  orva::Options o;
  o.flags = "DX";
  train(model, "some text, some more text, and again some text", o);
  const std::string file = saved(model);
  CTrichrModel back;
  ASSERT_EQ(load_text(back, file), kTrichrOk);
  EXPECT_EQ(back.nb_tri, model.nb_tri);
  EXPECT_EQ(saved(back), file);
}

TEST(ModelFile, FlagsAreReadByPosition) {
  CTrichrModel model;
  ASSERT_EQ(load_text(model, file_of("V25aD  B", "")), kTrichrOk);
  EXPECT_EQ(model.rm_tridups, 1);
  EXPECT_EQ(model.rm_caps, 0);
  EXPECT_EQ(model.rm_digits, 0);
  EXPECT_EQ(model.rm_blks, 1);
  ASSERT_EQ(load_text(model, file_of("V25aBXCD", "")), kTrichrOk);
  EXPECT_EQ(model.rm_tridups + model.rm_caps + model.rm_digits + model.rm_blks, 0);
}

TEST(ModelFile, HeaderOfTheMarkAloneClearsAllFlags) {
  CTrichrModel model;
  model.rm_caps = 1;
  ASSERT_EQ(load_text(model, file_of("V25a", "")), kTrichrOk);
  EXPECT_EQ(model.rm_tridups + model.rm_caps + model.rm_digits + model.rm_blks, 0);
}

TEST(ModelFile, MissingFileIsMinusOneAndOtherMarkMinusTwo) {
  CTrichrModel model;
  EXPECT_EQ(model.load("/nonexistent/model.tri"), kTrichrCannotOpen);
  EXPECT_EQ(load_text(model, file_of("V24a    ", "")), kTrichrOtherVersion);
  EXPECT_EQ(load_text(model, ""), kTrichrBadFormat);
}

TEST(ModelFile, LastKeyWithoutNewlineLosesItsLastCharacter) {
  CTrichrModel model;
  ASSERT_EQ(load_text(model, file_of("V25a", "1.5\t616263\n2.5\t616264")), kTrichrOk);
  EXPECT_EQ(find(model, "616263"), 0);
  EXPECT_EQ(find(model, "61626"), 1);
}

TEST(ModelFile, RepeatedKeyShiftsTheCostsBehindIt) {
  CTrichrModel model;
  ASSERT_EQ(load_text(model, file_of("V25a", "1\t616161\n2\t616161\n3\t626262\n")), kTrichrOk);
  EXPECT_EQ(model.nb_tri, 3);
  EXPECT_EQ(model.nb_elems, 2);
  EXPECT_EQ(find(model, "626262"), 1);
  EXPECT_EQ(model.tri_lps[find(model, "626262")], 2.0f);
  // The cost without a key is saved with a null one.
  const std::string file = saved(model);
  EXPECT_EQ(file.substr(file.size() - 14), "3.0000\t(null)\n");
}

TEST(ModelFile, BadLinesAreRefused) {
  struct Case {
    const char* what;
    std::string text;
  };
  const std::string good = file_of("V25a", "1.5\t616263\n");
  const std::string nul_line = std::string("\0", 1) + "1.5\t616263\n";
  const Case cases[] = {
      {"lp_const that is none", "V25a\nx\n" + byte_costs() + "1 2\n"},
      {"lp_const not finite", "V25a\nnan\n" + byte_costs() + "1 2\n"},
      {"byte cost that is none", "V25a\n2\n1.0 x"},
      {"byte cost not finite", "V25a\n2\n1.0 inf " + byte_costs() + "1 2\n"},
      {"end within the byte costs", "V25a\n2\n1.0 1.0"},
      {"no last scalars", "V25a\n2\n" + byte_costs()},
      {"one scalar", "V25a\n2\n" + byte_costs() + "1.0\n"},
      {"scalar not finite", "V25a\n2\n" + byte_costs() + "1.0 1e99\n"},
      {"cost that is none", good + "x\t616263\n"},
      {"cost not finite", good + "1e99\t616264\n"},
      {"empty line", good + "\n"},
      {"line without a tab", good + "1.5 616264\n"},
      {"line that begins with NUL", good + nul_line},
      {"line beyond the buffer", good + "1.5\t" + std::string(5000, 'a') + "\n"},
  };
  for (const Case& c : cases) {
    CTrichrModel model;
    EXPECT_EQ(load_text(model, c.text), kTrichrBadFormat) << c.what;
  }
}

TEST(ModelFile, EveryTruncationReturnsAResult) {
  const std::string good = file_of("V25aDCX \tTriW=0.900", "1.5\t616263\n0.5\t616264\n");
  for (size_t n = 0; n < good.size(); n += 7) {
    CTrichrModel model;
    const int result = load_text(model, good.substr(0, n));
    EXPECT_TRUE(result <= 0 && result >= kTrichrBadFormat) << n;
  }
}

TEST(ModelFile, LoadedCostsGrowByAHundredAndOneAndAreCounted) {
  std::string lines;
  for (int i = 0; i < 150; ++i) {
    char line[32];
    snprintf(line, sizeof line, "1.5\t%06x\n", i);
    lines += line;
  }
  CTrichrModel model;
  ASSERT_EQ(load_text(model, file_of("V25a", lines)), kTrichrOk);
  EXPECT_EQ(model.nb_tri, 150);
  EXPECT_EQ(model.tri_lps_tsize, 201);
  const int before = _MallocChkNbBytes;
  model.clean();
  EXPECT_EQ(before - _MallocChkNbBytes, 201 * 4);
  EXPECT_EQ(model.nb_tri, 150);
  model.init();
  EXPECT_EQ(model.nb_tri, 0);
}

TEST(ModelFile, UnwritablePathIsMinusOneAndAFullDeviceIsNotReported) {
  CTrichrModel model;
  EXPECT_EQ(model.save("/nonexistent/model.tri", 0.9f), -1);
  EXPECT_EQ(model.save("/dev/full", 0.9f), 0);
}

TEST(ModelFile, NumbersAreThoseOfTheCLocaleEverywhere) {
  // A locale with a decimal comma, made where none is installed.
  const orva::TempDir dir;
  if (setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) {
    const std::string make =
        "localedef -c -i de_DE -f UTF-8 " + (dir / "de_DE.UTF-8") + " >/dev/null 2>&1";
    const int made = system(make.c_str());
    setenv("LOCPATH", dir.path().c_str(), 1);
    if (made != 0 || setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) {
      GTEST_SKIP() << "no locale with a decimal comma here";
    }
  }
  char comma[8];
  snprintf(comma, sizeof comma, "%.1f", 1.5);
  CTrichrModel model;
  const int result = load_text(model, file_of("V25a", "1.5\t616263\n"));
  const std::string file = saved(model);
  setlocale(LC_NUMERIC, "C");
  unsetenv("LOCPATH");
  EXPECT_STREQ(comma, "1,5");
  EXPECT_EQ(result, kTrichrOk);
  EXPECT_EQ(model.tri_lps[0], 1.5f);
  EXPECT_NE(file.find("1.5000\t616263"), std::string::npos);
}
