// CLidFacs: turns raw bytes into the bytes that training and the automaton consume.
//
// Buffer side (detection): init(dups, caps, digits, blks), then preprocess() on each buffer.
// Stream side (training):
//   CLidFacs facs;
//   if (facs.init("text.txt", 0, 0, -1, 1, 1, 1, 0)) {
//     int len = 0;
//     unsigned char* head = nullptr;
//     while (unsigned char* run = facs.get_nexts(&len, &head)) use(head, run, len);
//   }
//
// Life cycle: construct, one of the init calls, get_nexts until null, reinit to read again.
// Ownership:  a stream that the object opened by name is closed with it; a caller's stream is not.
// Results:    initialisers return 1 for success and 0 for failure.
#ifndef ORVA_LIB_FACS_LID_FACS_H_
#define ORVA_LIB_FACS_LID_FACS_H_

#include <cstdio>

class CLidFacs {
 public:
  static constexpr int kPieceSize = 1024;      // bytes read from the stream at a time
  static constexpr int kNoLimit = 1000000000;  // stands for "to the end of the input"

  CLidFacs() = default;
  ~CLidFacs();
  CLidFacs(const CLidFacs&) = delete;
  CLidFacs& operator=(const CLidFacs&) = delete;

  // Buffer-only use: drops any stream and stores the four switches. Returns 1.
  int init(int rm_tridups, int rm_caps, int rm_digits, int rm_blks);

  // Reads the file `path` (opened "rb") with the selection `mode`, `start`, `end` of init1.
  int init(const char* path, int mode, int start, int end, int rm_tridups, int rm_caps,
           int rm_digits, int rm_blks);

  // Reads a stream that the caller keeps owning.
  int init(FILE* stream, int mode, int start, int end, int rm_tridups, int rm_caps, int rm_digits,
           int rm_blks);

  // Sets up what get_nexts delivers, in bytes of preprocessed text:
  //   mode 0: everything;
  //   mode 1: segments of start + 2 bytes, one every `end` bytes (only the first when end is -1);
  //   mode 2: after `start` bytes, segments of end - start + 2 bytes;
  //   mode 3: after `start` raw bytes of the stream, one segment of end + 2 bytes.
  // A selection that makes no sense acts as mode 0. Returns 1.
  int init1(int mode, int start, int end, int rm_tridups, int rm_caps, int rm_digits, int rm_blks);

  // Opens the named file again with the stored selection; 0 when no name is owned.
  int reinit();

  // Applies the switches that are on, in the order below; returns the new length.
  int preprocess(unsigned char* buf, int len);
  // Cuts runs of four or more equal bytes to three (a NUL is taken to precede the buffer).
  int remove_tricar_dups(unsigned char* buf, int len);
  int remove_caps(unsigned char* buf, int len);    // A-Z to a-z; bytes above 127 stay
  int remove_digits(unsigned char* buf, int len);  // 0-9
  int remove_blks(unsigned char* buf, int len);    // space, CR, LF and TAB

  // The next run of text, null at the end. `head` receives the two bytes in front of the run when
  // a segment begins, else null.
  unsigned char* get_nexts(int* len, unsigned char** head);

 private:
  void drop_name();
  bool fill();
  void advance(int n);
  void skip_to_stop(int available);

  char* name_ = nullptr;
  FILE* stream_ = nullptr;
  int start_ = 0;
  int end_ = -1;
  // Two bytes in front of the piece keep the last bytes delivered, so that a segment that begins
  // before the current piece never leaves the buffer.
  unsigned char storage_[2 + kPieceSize + 1] = {};
  unsigned char head_[2] = {};
  int index_ = 0;
  int position_ = 0;
  int filled_ = 0;
  int mode_ = 0;
  int limit_ = kNoLimit;
  int stop_ = -1;
  int rm_tridups_ = 0;
  int rm_caps_ = 0;
  int rm_digits_ = 0;
  int rm_blks_ = 0;
};

#endif  // ORVA_LIB_FACS_LID_FACS_H_
