#include "bench/detectors.h"

#include <enca.h>
#include <uchardet/uchardet.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "lib/api/model_names.h"
#include "lib/api/pemb.h"
#include "lib/detect/orva.h"

namespace orva::bench {
namespace {

class Pemb : public Detector {
 public:
  Pemb(const std::string& models, size_t every) : every_(every) {
    handle_ = pemb_init((models + "/Model.grp").c_str());
    std::string error;
    if (handle_ == nullptr || !load_model_names(models + "/Model.stc", &names_, &error)) abort();
  }
  ~Pemb() override {
    pemb_dispose(handle_);
    free(handle_);
  }

  std::string detect(std::string_view bytes) override {
    pemb_load(handle_);
    constexpr size_t kMaxPiece = PEMB_MAX_PIECE;
    const size_t step = every_ == 0 ? kMaxPiece : every_;
    int best = -1;
    float ratio = 0;
    for (size_t at = 0; at < bytes.size(); at += step) {
      const size_t length = std::min(step, bytes.size() - at);
      memcpy(piece_, bytes.data() + at, length);
      pemb_nexts(handle_, piece_, static_cast<unsigned>(length));
      if (every_ != 0) pemb_get_scores(handle_, &best, &ratio);
    }
    if (pemb_get_scores(handle_, &best, &ratio) == nullptr) return {};
    return names_[static_cast<size_t>(best)];
  }

 private:
  size_t every_;
  PembHandle* handle_;
  std::vector<std::string> names_;
  unsigned char piece_[PEMB_MAX_PIECE];
};

class Orva : public Detector {
 public:
  explicit Orva(const std::string& models, bool all) {
    opened_ =
        orva_open_models((models + "/Model.grp").c_str(), (models + "/Model.stc").c_str(), nullptr);
    detector_ = orva_new(opened_);
    if (opened_ == nullptr || detector_ == nullptr) abort();
    orva_set_limit(detector_, all ? 0 : ORVA_DEFAULT_LIMIT);
  }
  ~Orva() override {
    orva_free(detector_);
    orva_close_models(opened_);
  }

  std::string detect(std::string_view bytes) override {
    OrvaResult result;
    if (orva_detect(detector_, bytes.data(), bytes.size(), &result) < 0) abort();
    return result.charset == nullptr ? "" : result.charset;
  }

 private:
  OrvaModels* opened_;
  OrvaDetector* detector_;
};

class Uchardet : public Detector {
 public:
  std::string detect(std::string_view bytes) override {
    uchardet_t handle = uchardet_new();
    uchardet_handle_data(handle, bytes.data(), bytes.size());
    uchardet_data_end(handle);
    std::string name = uchardet_get_charset(handle);
    uchardet_delete(handle);
    return name;
  }
};

class Icu : public Detector {
 public:
  std::string detect(std::string_view bytes) override {
    UErrorCode status = U_ZERO_ERROR;
    UCharsetDetector* detector = ucsdet_open(&status);
    ucsdet_setText(detector, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    const UCharsetMatch* match = ucsdet_detect(detector, &status);
    std::string name = match == nullptr ? "" : ucsdet_getName(match, &status);
    ucsdet_close(detector);
    return name;
  }
};

class Enca : public Detector {
 public:
  explicit Enca(const char* language) : analyser_(enca_analyser_alloc(language)) {
    if (analyser_ == nullptr) abort();
  }
  ~Enca() override { enca_analyser_free(analyser_); }
  std::string detect(std::string_view bytes) override {
    const auto* text = reinterpret_cast<const unsigned char*>(bytes.data());
    const EncaEncoding encoding = enca_analyse_const(analyser_, text, bytes.size());
    const char* name = enca_charset_name(encoding.charset, ENCA_NAME_STYLE_MIME);
    return name == nullptr ? "" : name;
  }

 private:
  EncaAnalyser analyser_;
};

class Sum : public Detector {
 public:
  std::string detect(std::string_view bytes) override {
    unsigned long long sum = 0;
    for (const char c : bytes) {
      sum += static_cast<unsigned char>(c);
      __asm__ volatile("" : "+r"(sum));  // one addition a byte, not a vector of them
    }
    return sum == 0 ? "" : "sum";
  }
};

}  // namespace

std::unique_ptr<Detector> make_pemb(const std::string& models, size_t every) {
  return std::make_unique<Pemb>(models, every);
}
std::unique_ptr<Detector> make_orva(const std::string& models, bool all) {
  return std::make_unique<Orva>(models, all);
}
std::unique_ptr<Detector> make_uchardet() { return std::make_unique<Uchardet>(); }
std::unique_ptr<Detector> make_icu() { return std::make_unique<Icu>(); }
std::unique_ptr<Detector> make_enca(const char* language) {
  return std::make_unique<Enca>(language);
}
std::unique_ptr<Detector> make_sum() { return std::make_unique<Sum>(); }

}  // namespace orva::bench
