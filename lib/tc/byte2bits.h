// CByte2BitsCnvt: for each byte value, how many of its bits are set and which, lowest first.
//
//   const CByte2BitsCnvt& bits = CByte2BitsCnvt::instance();
//   for (int i = 0; i < bits.count(byte); ++i) use(bits.positions(byte)[i]);
//
// Life cycle: one instance serves the whole library, built when it is loaded, freed with it.
// Ownership:  one buffer of 1024 positions that the 256 lists share.
#ifndef ORVA_LIB_TC_BYTE2BITS_H_
#define ORVA_LIB_TC_BYTE2BITS_H_

class CByte2BitsCnvt {
 public:
  static constexpr int kNbPositions = 1024;

  CByte2BitsCnvt();
  ~CByte2BitsCnvt();
  CByte2BitsCnvt(const CByte2BitsCnvt&) = delete;
  CByte2BitsCnvt& operator=(const CByte2BitsCnvt&) = delete;

  static const CByte2BitsCnvt& instance();

  int count(unsigned char byte) const { return counts_[byte]; }
  const unsigned char* positions(unsigned char byte) const { return lists_[byte]; }

 private:
  unsigned char counts_[256];
  const unsigned char* lists_[256];
  unsigned char* buffer_;
};

#endif  // ORVA_LIB_TC_BYTE2BITS_H_
