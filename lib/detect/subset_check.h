// Whether bytes keep within the older parts of GB18030: GBK, which has no characters of four bytes,
// and GB2312, which has the pairs of the first national set alone.
//
//   orva::SubsetCheck check;
//   check.feed(piece);
//   if (check.is_gb2312()) ...
//
// It tells the parts from the whole only: bytes that are no GB18030 at all are for the others to
// see.
#ifndef ORVA_LIB_DETECT_SUBSET_CHECK_H_
#define ORVA_LIB_DETECT_SUBSET_CHECK_H_

#include <cstdint>
#include <string_view>

namespace orva {

// Whether GB2312 assigns the pair of two bytes above 0x7F.
bool is_gb2312_pair(unsigned char lead, unsigned char trail);

class SubsetCheck {
 public:
  void reset() { *this = SubsetCheck(); }
  void feed(std::string_view bytes);

  uint64_t length() const { return length_; }
  bool is_gbk() const { return gbk_; }
  bool is_gb2312() const { return gb2312_; }

 private:
  void take_pair(unsigned char lead, unsigned char trail);

  uint64_t length_ = 0;
  unsigned char lead_ = 0;  // a first byte whose second one is still to come
  bool gbk_ = true;
  bool gb2312_ = true;
};

}  // namespace orva

#endif  // ORVA_LIB_DETECT_SUBSET_CHECK_H_
