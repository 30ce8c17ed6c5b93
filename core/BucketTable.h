// A hash table that remembers the order of insertion.
#pragma once

#include "core/Array.h"
#include "core/Checksum.h"
#include "core/List.h"
#include "core/String.h"

namespace korb {

/// An entry of a BucketTable.
template <class V, class K>
struct Bucket {
  K key{};
  List<Bucket> *chain = nullptr; ///< the chain that holds this entry
  Bucket *next = nullptr;        ///< inserted after this one
  Bucket *prev = nullptr;        ///< inserted before this one
  V value{};
};

/// The bytes by which a key is hashed.
inline uint32_t KeyChecksum(const String &key) {
  return Checksum32(key, key.length());
}
template <class K>
uint32_t KeyChecksum(const K &key) {
  return Checksum32(&key, sizeof key);
}

template <class V, class K>
class BucketTableForm;

/// A hash table with a fixed number of chains: chains grow as it is overfilled. It is walked as a collection of its
/// buckets, oldest first. A table must be `reset` before it can be filled.
template <class V, class K>
class BucketTable : public Collection<Bucket<V, K>> {
public:
  using Entry = Bucket<V, K>;
  using Chain = List<Entry>;

  BucketTable();
  ~BucketTable() { this->clear(); }

  /// Empties the table and gives it `n` chains; below 0 acts as 0.
  void reset(int32_t n);
  /// The chain number of `key`; 0x80000000 as a signed number while there are no chains.
  int32_t hash_index(const K &key) const;
  /// The chain of `key`, or null while there are no chains.
  Chain *chain_for(const K &key) { return buckets_.element_or_null(hash_index(key)); }
  /// Stores `value` under `key`. True when the key is new; false when it was known, its value is then replaced, and
  /// when there are no chains, nothing is stored then.
  bool insert(const K &key, const V &value);

  int32_t key_size() const { return sizeof(K); }
  int32_t value_size() const { return sizeof(V); }
  bool is_table() const { return true; }

private:
  friend class BucketTableForm<V, K>;

  int32_t bucket_count_ = 0;
  Array<Chain> buckets_;
  Entry *first_ = nullptr;
  Entry *last_ = nullptr;
};

/// Keeps the entries of a BucketTable: each in the chain of its key, all linked in the order of insertion.
template <class V, class K>
class BucketTableForm : public LinkedForm {
public:
  using Table = BucketTable<V, K>;
  using Entry = Bucket<V, K>;

  constexpr BucketTableForm() : LinkedForm(Kind::kTable) {}

  void place(const CollectionBase &all, CollectionIterator &it, bool at_end) const override {
    const Table &t = table(all);
    it = at_end ? CollectionIterator{0, 0, number(t.last_)} : CollectionIterator{0, number(t.first_), 0};
  }

  void *step(const CollectionBase &all, CollectionIterator &it, bool forward) const override {
    Entry *entry = bucket(forward ? it.next : it.prev);
    if (!entry)
      place(all, it, forward);
    else
      it = {number(entry), number(entry->next), number(entry->prev)};
    return entry;
  }

  void *look(const CollectionBase &, intptr_t place) const override { return bucket(place); }

  void clear(CollectionBase &all) const override {
    Table &t = table(all);
    t.buckets_.clear();
    t.bucket_count_ = t.count = 0;
    t.first_ = t.last_ = nullptr;
  }

  bool remove_current(CollectionBase &all, CollectionIterator &it) const override {
    Entry *entry = bucket(it.current);
    if (!entry)
      return false;
    Table &t = table(all);
    it = {0, number(entry->next), number(entry->prev)};
    (entry->prev ? entry->prev->next : t.first_) = entry->next;
    (entry->next ? entry->next->prev : t.last_) = entry->prev;
    List<Entry> &chain = *entry->chain;
    CollectionIterator node;
    for (Entry *other = chain.first(node); other != entry;)
      other = chain.next(node);
    chain.remove_current(node);
    --t.count;
    return true;
  }

  // Never reached: such an addition is refused before.
  void *add(CollectionBase &, const void *, bool) const override { return nullptr; }

private:
  static Table &table(CollectionBase &all) { return static_cast<Table &>(all); }
  static const Table &table(const CollectionBase &all) { return static_cast<const Table &>(all); }
  static Entry *bucket(intptr_t place) { return reinterpret_cast<Entry *>(place); }
  static intptr_t number(const Entry *entry) { return reinterpret_cast<intptr_t>(entry); }
};

template <class V, class K>
inline constinit const BucketTableForm<V, K> TheBucketTableForm;

template <class V, class K>
BucketTable<V, K>::BucketTable() : Collection<Entry>(TheBucketTableForm<V, K>) {}

template <class V, class K>
void BucketTable<V, K>::reset(int32_t n) {
  this->clear();
  bucket_count_ = n < 0 ? 0 : n;
  buckets_.reset_count(bucket_count_);
}

template <class V, class K>
int32_t BucketTable<V, K>::hash_index(const K &key) const {
  if (bucket_count_ <= 0)
    return INT32_MIN;
  return static_cast<int32_t>(KeyChecksum(key) % static_cast<uint32_t>(bucket_count_));
}

template <class V, class K>
bool BucketTable<V, K>::insert(const K &key, const V &value) {
  Chain *chain = chain_for(key);
  if (!chain)
    return false;
  CollectionIterator it;
  chain->begin(it);
  while (Entry *entry = chain->next(it)) {
    if (entry->key == key) {
      entry->value = value;
      return false;
    }
  }
  Entry *entry = chain->append_copy(nullptr);
  entry->key = key;
  entry->value = value;
  entry->chain = chain;
  entry->prev = last_;
  (last_ ? last_->next : first_) = entry;
  last_ = entry;
  ++this->count;
  return true;
}

} // namespace korb
