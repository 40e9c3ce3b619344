#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "tools/eval_output.h"

namespace orva {
namespace {

// Confusions beyond these are rare ones, one document each as a rule.
constexpr size_t kMostConfusions = 30;

constexpr char kNotKnown[] = "-";

__attribute__((format(printf, 1, 2))) std::string printed(const char* format, ...) {
  char line[512];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(line, sizeof(line), format, arguments);
  va_end(arguments);
  return line;
}

std::string percent(uint64_t part, uint64_t whole) {
  if (whole == 0) return kNotKnown;
  return printed("%.1f", 100 * static_cast<double>(part) / static_cast<double>(whole));
}

std::string row(const std::string& name, const Counts& counts) {
  return printed("%-18s %9llu %7s %7s %9s\n", name.c_str(),
                 static_cast<unsigned long long>(counts.documents),
                 percent(counts.same_text, counts.documents).c_str(),
                 percent(counts.same_name, counts.documents).c_str(),
                 percent(counts.right_language, counts.with_language).c_str());
}

std::string table(const char* title, const std::vector<std::pair<std::string, Counts>>& rows) {
  std::string text =
      printed("\n%-18s %9s %7s %7s %9s\n", title, "documents", "text %", "name %", "language %");
  for (const auto& [name, counts] : rows) text += row(name, counts);
  return text;
}

std::string confusions(const char* title, const std::vector<Confusion>& all) {
  if (all.empty()) return "";
  std::string text = printed("\n%s\n", title);
  for (size_t i = 0; i < std::min(all.size(), kMostConfusions); ++i) {
    text += printed("%9llu  %s -> %s\n", static_cast<unsigned long long>(all[i].documents),
                    all[i].label.c_str(), all[i].answer.empty() ? "(none)" : all[i].answer.c_str());
  }
  if (all.size() > kMostConfusions) {
    text += printed("           and %zu more\n", all.size() - kMostConfusions);
  }
  return text;
}

std::string calibration(const Tally& tally) {
  std::string text = "\nprobability    answers   mean %  right %\n";
  for (size_t i = 0; i < Tally::kBins; ++i) {
    const Bin& bin = tally.bins()[i];
    const auto answers = static_cast<double>(bin.answers);
    const std::string mean =
        bin.answers == 0 ? kNotKnown : printed("%.1f", 100 * bin.probabilities / answers);
    text += printed("%.1f to %.1f  %10llu %8s %8s\n", static_cast<double>(i) / 10,
                    static_cast<double>(i + 1) / 10, static_cast<unsigned long long>(bin.answers),
                    mean.c_str(), percent(bin.right, bin.answers).c_str());
  }
  return text + printed("expected calibration error %.3f\n", tally.calibration_error());
}

}  // namespace

std::string tally_text(const Tally& tally) {
  std::string text =
      printed("%-18s %9s %7s %7s %9s\n", "", "documents", "text %", "name %", "language %");
  text += row("all", tally.all());
  if (tally.unanswered() != 0) {
    text +=
        printed("without an answer  %9llu\n", static_cast<unsigned long long>(tally.unanswered()));
  }
  text += table("charset", tally.by_charset());
  if (tally.all().with_language != 0) text += table("language", tally.by_language());
  text += confusions("charsets answered wrong", tally.charset_confusions());
  text += confusions("languages answered wrong", tally.language_confusions());
  return text + calibration(tally);
}

}  // namespace orva
