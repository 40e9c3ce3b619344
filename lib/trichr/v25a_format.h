// The trigram model file "V25a": a text file, lines ended by '\n', numbers as the C locale writes
// them.
//
//   line      content
//   1         "V25a", four flag characters, and with a weight a tab and "TriW=0.900"
//   2         lp_const
//   3 - 34    the 256 single-byte costs, eight to a line, -1.0000 for a byte never seen
//   35        lp_base and lp_scale
//   36 -      per trigram its cost, a tab, and its key: six lower-case hexadecimal digits
//
// A flag character is the flag's letter when it is set and a blank when not; a file may list each
// key once.
#ifndef ORVA_LIB_TRICHR_V25A_FORMAT_H_
#define ORVA_LIB_TRICHR_V25A_FORMAT_H_

namespace orva {

inline constexpr char kV25aMark[] = "V25a";
inline constexpr int kV25aMarkLength = 4;
// Letters of the flags in the order of the header line.
inline constexpr char kV25aFlagDups = 'D';
inline constexpr char kV25aFlagCaps = 'C';
inline constexpr char kV25aFlagDigits = 'X';
inline constexpr char kV25aFlagBlanks = 'B';
inline constexpr char kV25aFlagOff = ' ';

inline constexpr char kV25aWeight[] = "\tTriW=%5.3f";
// Weights at or below this write no weight.
inline constexpr float kV25aNoWeight = -0.5f;
inline constexpr char kV25aConst[] = "%6.4f\n";
inline constexpr char kV25aByteCost[] = "%7.4f ";
inline constexpr int kV25aCostsPerLine = 8;
inline constexpr char kV25aBaseScale[] = "%6.4f %6.4f\n";
inline constexpr char kV25aTrigram[] = "%6.4f\t%s\n";
// What stands for the key of a cost that has none.
inline constexpr char kV25aNoKey[] = "(null)";

// Longest line that is read whole, its newline and terminator included.
inline constexpr int kV25aLineSize = 4000;

// Digits of a key, and a key with its terminator.
inline constexpr int kV25aKeyLength = 6;
inline constexpr int kV25aKeySize = kV25aKeyLength + 1;

}  // namespace orva

#endif  // ORVA_LIB_TRICHR_V25A_FORMAT_H_
