#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "tools/eval_output.h"

namespace orva {
namespace {

// The bars at the left, the curve at the right; pixels.
constexpr int kMargin = 30;
constexpr int kTop = 60;
constexpr int kNameWidth = 130;
constexpr int kBarWidth = 240;
constexpr int kCountWidth = 90;
constexpr int kRow = 18;
constexpr int kBar = 12;
constexpr int kCurve = 360;
constexpr int kCurveLeft = kMargin + kNameWidth + kBarWidth + kCountWidth + 60;
constexpr int kWidth = kCurveLeft + kCurve + kMargin;
// Axis labels and the two lines of text below the curve.
constexpr int kBelowCurve = 90;
constexpr double kLargestDot = 11;

__attribute__((format(printf, 2, 3))) void add(std::string* out, const char* format, ...) {
  char line[512];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(line, sizeof(line), format, arguments);
  va_end(arguments);
  *out += line;
}

std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '<') {
      out += "&lt;";
    } else if (c == '&') {
      out += "&amp;";
    } else {
      out += c;
    }
  }
  return out;
}

double share(uint64_t part, uint64_t whole) {
  return whole == 0 ? 0 : static_cast<double>(part) / static_cast<double>(whole);
}

void add_bars(const std::vector<std::pair<std::string, Counts>>& rows, std::string* out) {
  const int left = kMargin + kNameWidth;
  add(out, "<text x=\"%d\" y=\"%d\" class=\"title\">Read right, by charset</text>\n", kMargin,
      kTop - 22);
  int y = kTop;
  for (const auto& [name, counts] : rows) {
    const double right = share(counts.same_text, counts.documents);
    *out += "<text x=\"" + std::to_string(left - 8) + "\" y=\"" + std::to_string(y + kBar - 2) +
            "\" class=\"name\">" + escaped(name) + "</text>\n";
    add(out, "<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" class=\"empty\"/>\n", left, y,
        kBarWidth, kBar);
    add(out, "<rect x=\"%d\" y=\"%d\" width=\"%.1f\" height=\"%d\" class=\"full\"/>\n", left, y,
        right * kBarWidth, kBar);
    add(out, "<text x=\"%d\" y=\"%d\">%.1f %% of %llu</text>\n", left + kBarWidth + 8, y + kBar - 2,
        100 * right, static_cast<unsigned long long>(counts.documents));
    y += kRow;
  }
}

// The square of the curve with its grid and its diagonal, on which perfect answers lie.
void add_axes(std::string* out) {
  const int bottom = kTop + kCurve;
  add(out, "<text x=\"%d\" y=\"%d\" class=\"title\">How often a probability comes true</text>\n",
      kCurveLeft, kTop - 22);
  for (int i = 0; i <= 10; i += 2) {
    const int at = i * kCurve / 10;
    add(out, "<path d=\"M%d %dv%dM%d %dh%d\" class=\"grid\"/>\n", kCurveLeft + at, kTop, kCurve,
        kCurveLeft, bottom - at, kCurve);
    add(out, "<text x=\"%d\" y=\"%d\" class=\"middle\">%d</text>\n", kCurveLeft + at, bottom + 16,
        10 * i);
    add(out, "<text x=\"%d\" y=\"%d\" class=\"name\">%d</text>\n", kCurveLeft - 6, bottom - at + 4,
        10 * i);
  }
  add(out, "<path d=\"M%d %dL%d %d\" class=\"diagonal\"/>\n", kCurveLeft, bottom,
      kCurveLeft + kCurve, kTop);
  add(out, "<text x=\"%d\" y=\"%d\" class=\"middle\">mean probability of the answers, %%</text>\n",
      kCurveLeft + kCurve / 2, bottom + 36);
  add(out,
      "<text x=\"%d\" y=\"%d\" class=\"middle\" transform=\"rotate(-90 %d %d)\">"
      "answers that are right, %%</text>\n",
      kCurveLeft - 38, kTop + kCurve / 2, kCurveLeft - 38, kTop + kCurve / 2);
}

void add_curve(const Tally& tally, std::string* out) {
  add_axes(out);
  uint64_t most = 1;
  for (const Bin& bin : tally.bins()) most = std::max(most, bin.answers);
  std::string path;
  std::string dots;
  for (const Bin& bin : tally.bins()) {
    if (bin.answers == 0) continue;
    const double x = kCurveLeft + kCurve * bin.probabilities / static_cast<double>(bin.answers);
    const double y = kTop + kCurve * (1 - share(bin.right, bin.answers));
    add(&path, "%c%.1f %.1f", path.empty() ? 'M' : 'L', x, y);
    // The area grows with the logarithm of the number, so that rare ones can be seen.
    const double size = std::log1p(static_cast<double>(bin.answers));
    const double radius =
        std::max(2.0, kLargestDot * std::sqrt(size / std::log1p(static_cast<double>(most))));
    add(&dots, "<circle cx=\"%.1f\" cy=\"%.1f\" r=\"%.1f\" class=\"dot\"/>\n", x, y, radius);
    add(&dots, "<text x=\"%.1f\" y=\"%.1f\" class=\"middle\">%llu</text>\n", x, y + radius + 13,
        static_cast<unsigned long long>(bin.answers));
  }
  *out += "<path d=\"" + path + "\" class=\"curve\"/>\n" + dots;
  add(out,
      "<text x=\"%d\" y=\"%d\" class=\"middle\">below each dot: answers; "
      "expected calibration error %.3f</text>\n",
      kCurveLeft + kCurve / 2, kTop + kCurve + 60, tally.calibration_error());
}

}  // namespace

std::string tally_picture(const Tally& tally) {
  const std::vector<std::pair<std::string, Counts>> rows = tally.by_charset();
  const int bars = kTop + static_cast<int>(rows.size()) * kRow + kMargin;
  const int height = std::max(bars, kTop + kCurve + kBelowCurve);
  std::string out;
  add(&out,
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" "
      "viewBox=\"0 0 %d %d\">\n",
      kWidth, height, kWidth, height);
  out +=
      "<style>text{font:12px sans-serif;fill:#333}.title{font-size:16px}.name{text-anchor:end}"
      ".middle{text-anchor:middle}.empty{fill:#e4e7eb}.full{fill:#2f6f9f}"
      ".grid{stroke:#e4e7eb}.diagonal{stroke:#999;stroke-dasharray:5 4}"
      ".curve{fill:none;stroke:#c2571a;stroke-width:2}.dot{fill:#c2571a}</style>\n";
  add(&out, "<rect width=\"%d\" height=\"%d\" fill=\"#fff\"/>\n", kWidth, height);
  add_bars(rows, &out);
  add_curve(tally, &out);
  return out + "</svg>\n";
}

}  // namespace orva
