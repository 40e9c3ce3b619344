// Judging an answer: an answered charset is right when it reads a document as the label does,
// whatever the two are called. East Asian labels are read as the supersets that their documents are
// really written in. Bytes that the label itself cannot read are passed over on both
// sides, so that a document with a broken character can still be answered right.
//
//   const orva::Judgement j = orva::judge({"windows-1252", "latin1"}, bytes, "ISO-8859-1");
//   if (j.same_text) ...
//
// Life cycle: plain functions; nothing is kept from one call to the next.
// Threads:    any number.
#ifndef ORVA_LIB_ACCURACY_JUDGE_H_
#define ORVA_LIB_ACCURACY_JUDGE_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orva {

struct Judgement {
  bool same_name = false;  // the answer is one of the labels, or an alias of one
  bool same_text = false;  // the answer decodes the document to the text that a label gives
};

// Whether `label` names a charset: one of the table, one of the C library, or "UTF-16" and
// "UTF-32", which stand for the byte order that the document's mark gives, little-endian without
// one.
bool is_known_label(const std::string& label);

// `answer` is empty when there was none.
Judgement judge(const std::vector<std::string>& labels, std::string_view bytes,
                const std::string& answer);

// At most `size` bytes of a document, beginning at a character a little before the first one
// outside ASCII, written anew where the charset has escape sequences. Empty when the label cannot
// read the document.
std::string window_of(const std::string& label, std::string_view bytes, size_t size);

// A language as two letters, whatever region or form it is written with ("pt-BR", "nb").
std::string plain_language(std::string_view language);

}  // namespace orva

#endif  // ORVA_LIB_ACCURACY_JUDGE_H_
