// The instances of the container templates that the offline side uses.

#include "lib/tc/expt_sort_impl.h"
#include "lib/tc/int_htable.h"
#include "lib/tc/mem_ptr.h"
#include "lib/tc/sparse_table.h"
#include "lib/tc/tc_expnd_table.h"
#include "lib/tc/tc_trie_impl.h"
#include "lib/tc/word_freq.h"

template class TCExpndTable<int>;
template class TCExpndTable<unsigned>;
template class MemPtr<char>;

template class TCIntHTable<int, unsigned>;
template class TCIntHTable<unsigned char, TrieNodeSeg>;
template class TCSparseTable<int, unsigned>;
template class TCSparseTable<unsigned char, TrieNodeSeg>;

template class TCTrie<unsigned char>;
template class TCTrieFsaEnum<unsigned char>;

template class TCExpTSortBase<WordFreq>;
template class TCExpTSortImm<WordFreq>;
template class TCExpTSortBase<TCTrie<unsigned char>::SegSortStr>;
template class TCExpTSort<TCTrie<unsigned char>::SegSortStr>;
