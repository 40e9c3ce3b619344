#include "tests/host/fake_pemb.h"

#include <cstring>
#include <new>

#include "lib/api/pemb.h"

struct PembHandle {};

namespace orva {
namespace {

PembHandle handle;
float scores[1];

}  // namespace

FakeLibrary g_library;

static void throw_if_asked(const char* function) {
  if (strcmp(g_library.throws_in, function) == 0) throw std::bad_alloc();
}

}  // namespace orva

PembHandle* pemb_init(const char* path) {
  orva::throw_if_asked("pemb_init");
  orva::g_library.opened.emplace_back(path);
  return orva::g_library.opens ? &orva::handle : nullptr;
}

int pemb_load(PembHandle* /*handle*/) {
  orva::throw_if_asked("pemb_load");
  ++orva::g_library.loads;
  return orva::g_library.load_result;
}

int pemb_nexts(PembHandle* handle, unsigned char* bytes, unsigned int length) {
  orva::throw_if_asked("pemb_nexts");
  if (handle == nullptr || length > PEMB_MAX_PIECE) return -1;
  orva::g_library.pieces.emplace_back(reinterpret_cast<const char*>(bytes), length);
  if (length > 0) memset(bytes, 'X', length);
  return 0;
}

float* pemb_get_scores(PembHandle* handle, int* best, float* score) {
  orva::throw_if_asked("pemb_get_scores");
  if (handle == nullptr) return nullptr;
  if (orva::g_library.names_best) *best = orva::g_library.best;
  *score = orva::g_library.ratio;
  return orva::g_library.scores ? orva::scores : nullptr;
}

void pemb_dispose(PembHandle* /*handle*/) {
  ++orva::g_library.disposals;
  orva::throw_if_asked("pemb_dispose");
}
