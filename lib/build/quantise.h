// Costs as one byte: q stands for q * step + smallest cost of its model.
#ifndef ORVA_LIB_BUILD_QUANTISE_H_
#define ORVA_LIB_BUILD_QUANTISE_H_

namespace orva {

// The added 1 keeps the largest cost below code 256, unless the costs range over 511 or more.
inline float step_of(float lpmin, float lpmax) {
  return static_cast<float>((1.0L + lpmax - lpmin) / 256);
}

// Kept: codes are taken modulo 256, so the largest costs of a very wide model wrap to 0.
inline unsigned char quantised(float cost, float lpmin, float grad) {
  const long double steps = (static_cast<long double>(cost) - lpmin) / grad + 0.5L;
  return static_cast<unsigned char>(static_cast<unsigned>(static_cast<int>(steps)));
}

}  // namespace orva

#endif  // ORVA_LIB_BUILD_QUANTISE_H_
