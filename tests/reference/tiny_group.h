// A model group file written out by hand, byte by byte, from the format's page.
//
// Two bytes, "a" and "b", and the trigrams "aba" and "bab":
//
//   state 0  root, sparse   a -> 1, b -> 2
//   state 1  "a", sparse    b -> 3
//   state 2  "b", direct    a -> 4
//   state 3  "ab", sparse   a -> 5 = leaf 0, "aba"
//   state 4  "ba", sparse   b -> 6 = leaf 1, "bab"
//
// Models 0 "frA", 1 "enA" and 2 "enB"; models 1 and 2 are in fact set 0, whose index is 3.
#ifndef ORVA_TESTS_REFERENCE_TINY_GROUP_H_
#define ORVA_TESTS_REFERENCE_TINY_GROUP_H_

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace orva {

// The file with the places of its fields.
class TinyGroup {
 public:
  TinyGroup();

  const std::string& bytes() const { return bytes_; }
  // Where the field `name` begins.
  size_t at(const std::string& name) const;
  // The file with the 32-bit word at `field` + `offset` replaced.
  std::string with_word(const std::string& field, int32_t value, size_t offset = 0) const;
  // The file with one byte of `field` replaced.
  std::string with_byte(const std::string& field, int value, size_t offset = 0) const;

 private:
  void field(const char* name, std::initializer_list<int> bytes);
  void zeros(int n);
  void sizes();
  void models();
  void automaton();
  void unigrams();

  std::string bytes_;
  std::vector<std::pair<std::string, size_t>> fields_;
};

}  // namespace orva

#endif  // ORVA_TESTS_REFERENCE_TINY_GROUP_H_
