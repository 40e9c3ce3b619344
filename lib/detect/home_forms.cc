#include "lib/detect/home_forms.h"

#include <cstring>
#include <string>

#include "lib/detect/byte_blocks.h"

namespace orva {

namespace {

// What stands behind a text, as far as blocks are looked at, is no run.
constexpr unsigned char kNoRun[kByteBlock] = {1, 2, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6, 7, 8};

// Whether there are four equal bytes in a row. REQUIRES: kNoRun is behind them.
bool has_run(const unsigned char* bytes, size_t size) {
  const auto* const text = reinterpret_cast<const char*>(bytes);
  for (size_t i = 0; i + 3 < size; i += kByteBlock) {
    const ByteBlock now = block_at(text + i);
    const ByteBlock next = block_at(text + i + 1);
    ByteBlock runs = ByteBlock(now == next);
    if (!any(runs)) continue;
    const ByteBlock third = block_at(text + i + 2);
    const ByteBlock fourth = block_at(text + i + 3);
    runs &= ByteBlock(next == third) & ByteBlock(third == fourth);
    if (any(runs)) return true;
  }
  return false;
}

}  // namespace

HomeForms::HomeForms(const HomeAlphabet& home, const Folding& folding)
    : folding_(folding),
      forms_(kFirstLetter + coded_letters().size()),
      folded_forms_(forms_.size()),
      lacks_(forms_.size(), 0) {
  for (unsigned char b = 0; b < kFirstLetter; ++b) forms_[b].add(b);
  for (size_t i = 0; i < coded_letters().size(); ++i) {
    const bool there = put_letter(coded_letters()[i], home, &forms_[kFirstLetter + i]);
    lacks_[kFirstLetter + i] = there ? 0 : 1;
  }
  for (size_t c = 0; c < forms_.size(); ++c) {
    for (size_t k = 0; k < forms_[c].length; ++k) {
      const uint16_t as = folding[static_cast<unsigned char>(forms_[c].bytes[k])];
      if (as < Folding::kLeftOut) folded_forms_[c].add(static_cast<unsigned char>(as));
    }
  }
}

unsigned char* HomeForms::write(const LetterCode* from, const LetterCode* to,
                                unsigned char* end) const {
  const LetterForm* const forms = folded_forms_.data();
  for (; from != to; ++from) {
    const LetterForm form = forms[*from];
    memcpy(end, &form, sizeof form);
    end += form.length;
  }
  return end;
}

size_t HomeForms::fold(const LetterCode* begin, const LetterCode* from, const LetterCode* end,
                       unsigned char* folded) const {
  const size_t context = static_cast<size_t>(write(begin, from, folded) - folded);
  unsigned char* const to = write(from, end, folded + context);
  const auto size = static_cast<size_t>(to - folded);
  memcpy(to, kNoRun, sizeof kNoRun);
  // Runs are cut, which few texts have.
  if (has_run(folded, size)) return fold_plain(begin, from, end, folded);
  if (context <= 2) return size;
  memmove(folded, folded + context - 2, size - context + 2);
  return size - context + 2;
}

size_t HomeForms::fold_plain(const LetterCode* begin, const LetterCode* from, const LetterCode* end,
                             unsigned char* folded) const {
  std::string text;
  size_t context = 0;
  for (const LetterCode* code = begin; code != end; ++code) {
    if (code == from) context = text.size();
    text.append(forms_[*code].bytes, forms_[*code].length);
  }
  if (from == end) context = text.size();
  size_t size = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (i == context) size = keep_context(folded, size);
    size += folding_.take(text, i, folded + size);
  }
  return context == text.size() ? keep_context(folded, size) : size;
}

}  // namespace orva
