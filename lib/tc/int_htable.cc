#include "lib/tc/int_htable.h"

#include <cstdio>

int TCIntHTable_Iters = 0;
int TCIntHTable_MaxIters = 0;
int TCIntHTable_Acces = 0;
int TCIntHTable_NbRehash = 0;

namespace {

// "No self-test here."
constexpr char kMsgStubbed[] = "TCIntHTTest: stubbed.\n";

int wrapping_add(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

}  // namespace

void tc_intht_test() { fprintf(stderr, kMsgStubbed); }

namespace orva {

void count_lookup(int probes) {
  TCIntHTable_Iters = wrapping_add(TCIntHTable_Iters, probes);
  if (probes > TCIntHTable_MaxIters) TCIntHTable_MaxIters = probes;
  TCIntHTable_Acces = wrapping_add(TCIntHTable_Acces, 1);
}

void count_rehash() { TCIntHTable_NbRehash = wrapping_add(TCIntHTable_NbRehash, 1); }

}  // namespace orva
