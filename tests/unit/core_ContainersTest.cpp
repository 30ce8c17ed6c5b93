// The collections: what each operation does, and that every kind does the same where it is told to.
#include "core/Array.h"
#include "core/BucketTable.h"
#include "core/Collection.h"
#include "core/List.h"
#include "core/Stack.h"
#include "core/Vector.h"
#include "tests/support/Testing.h"

namespace {

std::string Show(int value) {
  return std::to_string(value);
}

std::string Show(const String &value) {
  return value.c_str();
}

/// All elements, walked forward; the walk backward must give the same.
template <class T>
std::string All(const Collection<T> &all) {
  std::string forward, backward;
  CollectionIterator it;
  all.begin(it);
  while (const T *value = all.next(it))
    forward += " " + Show(*value);
  while (const T *value = all.prev(it)) // from where the walk forward ended
    backward = " " + Show(*value) + backward;
  CHECK(forward == backward);
  return forward.empty() ? "" : forward.substr(1);
}

template <class T>
T Make(int value) {
  if constexpr (std::is_same_v<T, String>)
    return String(std::to_string(value).c_str());
  else
    return value;
}

template <class C>
using ElementOf = std::remove_reference_t<decltype(*C().first_value())>;

template <class C>
C Numbers(int count) {
  C all;
  for (int i = 1; i <= count; ++i)
    all.append(Make<ElementOf<C>>(i));
  return all;
}

/// What `edit` makes of a collection.
template <class C, class Edit>
std::string Edited(C all, Edit edit) {
  edit(all);
  return All(all);
}

int Descending(const void *a, const void *b) {
  const int x = *static_cast<const int *>(a), y = *static_cast<const int *>(b);
  return x < y ? 1 : x > y ? -1 : 0;
}

int ByText(const void *a, const void *b) {
  return (*static_cast<String *const *>(a))->compare_exact(**static_cast<String *const *>(b));
}

} // namespace

#define EVERY_COLLECTION List<int>, List<String>, Array<int>, Array<String>, Vector<int>, Vector<String>
#define INDEXED_COLLECTIONS Array<int>, Array<String>, Vector<int>, Vector<String>

TEST_CASE_TEMPLATE("an empty collection has nothing to give or to take", C, EVERY_COLLECTION) {
  C none;
  CHECK(none.first_value() == nullptr);
  CHECK(none.last_value() == nullptr);
  CHECK(none.random() == nullptr);
  CHECK_FALSE(none.remove_first());
  CHECK_FALSE(none.remove_last());
  none.rotate_left(1);
  none.keep_first(0);
  CHECK(All(none) == "");
}

TEST_CASE_TEMPLATE("an iterator of an empty collection stays where it is", C, EVERY_COLLECTION) {
  C none;
  CollectionIterator it{7, 8, 9};
  CHECK(none.first(it) == nullptr);
  CHECK(none.last(it) == nullptr);
  CHECK(it.current == 7);
  CHECK_FALSE(none.begin(it));
  CHECK_FALSE(none.remove_current(it));
  CHECK(none.take_current(it) == ElementOf<C>());
}

TEST_CASE_TEMPLATE("an iterator sees its element and both neighbours", C, EVERY_COLLECTION) {
  using T = ElementOf<C>;
  const C five = Numbers<C>(5);
  CollectionIterator it;
  CHECK(*five.first(it) == Make<T>(1));
  CHECK(five.prev_value(it) == nullptr);
  CHECK(*five.next(it) == Make<T>(2));
  CHECK(*five.next_value(it) == Make<T>(3));
  CHECK(*five.prev_value(it) == Make<T>(1));
  CHECK(*five.last(it) == Make<T>(5));
  CHECK(five.next(it) == nullptr);
  CHECK(five.current_value(it) == nullptr);
}

TEST_CASE_TEMPLATE("both ends grow, by elements and by collections, itself included", C, EVERY_COLLECTION) {
  using T = ElementOf<C>;
  const C three = Numbers<C>(3);
  CHECK(Edited(three, [](C &c) { c.append(Make<T>(9)), c.prepend(Make<T>(0)); }) == "0 1 2 3 9");
  CHECK(Edited(three, [](C &c) { c.append(*c.first_value()), c.prepend(*c.last_value()); }) == "1 1 2 3 1");
  CHECK(Edited(C(), [&](C &c) { c.append_all(three), c.prepend_all(Numbers<C>(2)); }) == "1 2 1 2 3");
  CHECK(Edited(three, [](C &c) { c.append_all(c); }) == "1 2 3 1 2 3");
  CHECK(Edited(three, [](C &c) { c.prepend_all(c); }) == "1 2 3 1 2 3");
  C grown = three;
  CHECK(*grown.append_copy(nullptr) == T());
  CHECK(grown.count == 4);
}

TEST_CASE_TEMPLATE("both ends shrink by any count", C, EVERY_COLLECTION) {
  const C five = Numbers<C>(5);
  CHECK(Edited(five, [](C &c) { c.remove_first(), c.remove_last(); }) == "2 3 4");
  CHECK(Edited(five, [](C &c) { c.remove_first_n(1), c.remove_last_n(2), c.remove_last_n(-1); }) == "2 3");
  CHECK(Edited(five, [](C &c) { c.keep_first(-1); }) == "");
  CHECK(Edited(five, [](C &c) { c.keep_last(3), c.keep_last(9); }) == "3 4 5");
}

TEST_CASE_TEMPLATE("a walk goes on after its element is removed", C, EVERY_COLLECTION) {
  using T = ElementOf<C>;
  C all = Numbers<C>(5);
  CollectionIterator it;
  all.first(it);
  all.next(it);
  CHECK(all.remove_current(it));
  CHECK_FALSE(all.remove_current(it));
  CHECK(*all.next(it) == Make<T>(3));
  CHECK(all.take_current(it) == Make<T>(3));
  CHECK(*all.prev(it) == Make<T>(1));
  CHECK(All(all) == "1 4 5");
}

TEST_CASE_TEMPLATE("a rotation turns by any number, either way", C, EVERY_COLLECTION) {
  const C five = Numbers<C>(5);
  const std::string turned[] = {"1 2 3 4 5", "2 3 4 5 1", "3 4 5 1 2", "4 5 1 2 3", "5 1 2 3 4"};
  for (int n = -7; n <= 7; ++n) {
    CAPTURE(n);
    CHECK(Edited(five, [n](C &c) { c.rotate_left(n); }) == turned[(n + 10) % 5]);
    CHECK(Edited(five, [n](C &c) { c.rotate_right(n); }) == turned[(10 - n) % 5]);
  }
}

TEST_CASE_TEMPLATE("a copy has elements of its own, and a move takes them all", C, EVERY_COLLECTION) {
  const C three = Numbers<C>(3);
  C copy = three;
  copy.remove_first();
  CHECK(All(three) == "1 2 3");
  C moved = std::move(copy);
  CHECK(All(moved) == "2 3");
  CHECK(copy.is_empty());
}

TEST_CASE_TEMPLATE("an element is inserted at any position, one of its own too", C, INDEXED_COLLECTIONS) {
  using T = ElementOf<C>;
  const C three = Numbers<C>(3);
  CHECK(Edited(three, [](C &c) { c.insert(2, Make<T>(9)); }) == "1 2 9 3");
  CHECK(Edited(three, [](C &c) { c.insert(99, Make<T>(8)), c.insert(-1, Make<T>(7)); }) == "7 1 2 3 8");
  CHECK(Edited(three, [](C &c) { c.insert(1, c.at(2)), c.insert(3, c.at(0)); }) == "1 3 2 1 3");
  CHECK(Edited(three, [](C &c) { c.insert_slot(0) = Make<T>(6), c.append_slot() = Make<T>(5); }) == "6 1 2 3 5");
  C all = three;
  all.insert_copy(1, nullptr);
  CHECK(all.at(1) == T());
}

TEST_CASE_TEMPLATE("a removal takes what there is of its range", C, INDEXED_COLLECTIONS) {
  using T = ElementOf<C>;
  const C five = Numbers<C>(5);
  CHECK(Edited(five, [](C &c) { c.remove_range(-3, 1); }) == "3 4 5");
  CHECK(Edited(five, [](C &c) { c.remove_range(3, 99), c.remove_range(2, 1); }) == "1 2 3");
  CHECK(Edited(five, [](C &c) { c.remove_at(2), c.remove_at(9); }) == "1 2 4 5");
  C all = five;
  CHECK(all.take_at(2) == Make<T>(3));
  CHECK(all.take_at(4) == T());
  CHECK(all.take_at(-1) == T());
  CHECK(All(all) == "1 2 4 5");
}

TEST_CASE_TEMPLATE("elements change places, and a place outside changes none", C, INDEXED_COLLECTIONS) {
  const C five = Numbers<C>(5);
  CHECK(Edited(five, [](C &c) { c.move_down(0, 3); }) == "2 3 4 1 5");
  CHECK(Edited(five, [](C &c) { c.move_up(1, 99); }) == "1 5 2 3 4");
  CHECK(Edited(five, [](C &c) { c.move_down(3, 3), c.move_up(4, 1); }) == "1 2 3 4 5");
  CHECK(Edited(five, [](C &c) { c.swap(0, 4), c.swap(0, 5), c.swap(-1, 0); }) == "5 2 3 4 1");
  // Swapped cells before an empty block.
  CHECK(Edited(C(), [](C &c) { c.move_down(5, -1), c.move_up(5, -1); }) == "");
}

TEST_CASE_TEMPLATE("a set count keeps what it can and adds empty elements", C, INDEXED_COLLECTIONS) {
  using T = ElementOf<C>;
  C all = Numbers<C>(5);
  all.set_count(3);
  CHECK(All(all) == "1 2 3");
  all.set_count(5);
  CHECK(all.checked_at(4) == T());
  CHECK(all.element_or_null(5) == nullptr);
  all.reset_count(2);
  CHECK(all.at(0) == T());
  all.set_count(-1);
  CHECK(all.is_empty());
}

TEST_CASE_TEMPLATE("a cursor goes both ways and is nowhere beyond the ends", C, INDEXED_COLLECTIONS) {
  C all = Numbers<C>(3);
  Cursor<ElementOf<C>> cursor(all);
  cursor.attach_at_end(&all);
  CHECK(cursor.value() == nullptr);
  for (int i = 2; i >= 0; --i) {
    CHECK(cursor.retreat());
    CHECK(cursor.index() == i);
    CHECK(cursor.value() == &all.at(i));
  }
  CHECK_FALSE(cursor.retreat());
  CHECK(cursor.index() == -1);
  cursor.attach(nullptr);
  CHECK_FALSE(cursor.advance());
}

TEST_CASE("a vector's room grows by half around its contents, and shrinks only when large") {
  Vector<String> all;
  const struct {
    int reserve, capacity, front;
  } rows[] = {{1, 1, 0},        {4, 6, 1},        {6, 6, 0},       {2000, 3000, 500},
              {500, 3000, 500}, {750, 3000, 500}, {501, 751, 125}, {100, 751, 125}};
  for (const auto &row : rows) {
    CAPTURE(row.reserve);
    all.reserve(row.reserve);
    CHECK(all.capacity() == row.capacity);
    CHECK(all.front_room() == row.front);
  }
  all.set_count(600);
  all.set_count(2);
  CHECK(all.capacity() == 751);
  all.reserve(751);
  CHECK(all.front_room() == 0);
}

TEST_CASE("a vector inserts into the roomier side") {
  Vector<String> all;
  all.reserve(2000);
  all.reserve(501);
  all.append("a");
  all.insert(0, "b"); // the front is no roomier than the back
  CHECK(all.front_room() == 125);
  CHECK(All(all) == "b a");

  Vector<int> numbers = Numbers<Vector<int>>(40);
  numbers.reserve(60);
  const int capacity = numbers.capacity();
  for (int i = 0; numbers.front_room() > 0; ++i)
    numbers.insert(0, i);
  CHECK(numbers.capacity() == capacity);
}

TEST_CASE("a vector's room is never below what it holds, and a copy has just that") {
  Vector<int> numbers;
  numbers.set_count(3000);
  numbers.reserve(501);
  CHECK(numbers.count == 3000);
  const Vector<int> two = Numbers<Vector<int>>(2);
  Vector<int> copy(two);
  CHECK(copy.capacity() == 3);
  copy.append_all(two);
  CHECK(copy.front_room() == 1);
  copy.rotate_left(1);
  CHECK(copy.capacity() == 6);
}

TEST_CASE("elements are sorted by what compares them") {
  Vector<int> numbers;
  for (int i = 0; i < 100; ++i)
    numbers.append(i * 37 % 101);
  numbers.sort(Descending);
  for (int i = 1; i < 100; ++i)
    CHECK(numbers.at(i - 1) > numbers.at(i));
  Vector<String> words;
  for (const char *word : {"pear", "apple", "fig", "apple", ""})
    words.append(word);
  words.sort(ByText);
  CHECK(All(words) == " apple apple fig pear");
}

TEST_CASE("a stack gives back its newest, and keeps it when trimmed") {
  Stack<String> stack = Numbers<Stack<String>>(5);
  Collection<String> &collection = stack;
  collection.keep_first(3);
  CHECK(All(stack) == "3 4 5");
  stack.push("6");
  CHECK(Show(stack.pop()) == "6");
  stack.discard_top();
  CHECK(All(stack) == "3 4");
  stack.clear();
  CHECK(Trapped([&] { stack.pop(); }) == "Stack<String>::pop");
  CHECK(Trapped([&] { stack.discard_top(); }) == "Stack<String>::discard_top");
}

TEST_CASE("an index out of range is a report that names the element") {
  Vector<int> three = Numbers<Vector<int>>(3);
  Array<String> none;
  Vector<short> unnamed;
  CHECK(Trapped([&] { three.at(3); }) == "Vector<int>[3]\nmax_index = 2");
  CHECK(Trapped([&] { none.checked_at(-1); }) == "Vector<String>[-1]\nmax_index = -1");
  CHECK(Trapped([&] { unnamed.check_index(0); }) == "Vector<?>[0]\nmax_index = -1");
}

namespace {

/// A table of three chains with these keys.
struct Set : BucketTable<bool, String> {
  explicit Set(std::initializer_list<const char *> keys) {
    reset(3);
    for (const char *key : keys)
      CHECK(insert(key, true));
  }
};

std::string Keys(Set &set) {
  std::string keys;
  Cursor<Bucket<bool, String>> cursor(set);
  while (cursor.advance())
    keys += std::string(cursor.value()->key) + (cursor.value()->value ? " " : "! ");
  return keys;
}

} // namespace

TEST_CASE("a table keeps the last value of each key, in the order of the first insertion") {
  Set set({"one", "two", "three", "four", "five", "Five"});
  CHECK_FALSE(set.insert("two", false));
  CHECK(Keys(set) == "one two! three four five Five ");
}

TEST_CASE("a table takes nothing while it has no chains") {
  BucketTable<bool, String> set;
  CHECK_FALSE(set.insert("a", true));
  CHECK(set.hash_index("a") == INT32_MIN);
  set.reset(3);
  CHECK(set.insert("a", true));
  set.clear();
  CHECK(set.count == 0);
  CHECK_FALSE(set.insert("a", true));
}

TEST_CASE("a key that was removed from a table can be inserted anew") {
  Set set({"one", "two", "three", "four"});
  CollectionIterator it;
  set.first(it);
  set.next(it);
  CHECK(set.remove_current(it));
  CHECK(set.next(it)->key == "three");
  CHECK(set.remove_first());
  CHECK(set.remove_last());
  CHECK(Keys(set) == "three ");
  CHECK(set.insert("two", true));
}

TEST_CASE("what would break a table's order is a report") {
  BucketTable<int, int> table, other;
  const Bucket<int, int> bucket;
  const auto line = [](int n) { return "internal error core " + std::to_string(n); };
  CHECK(Trapped([&] { table.append_copy(&bucket); }) == line(5650));
  CHECK(Trapped([&] { table.append(bucket); }) == line(5651));
  CHECK(Trapped([&] { table.append_all(other); }) == line(5652));
  CHECK(Trapped([&] { table.prepend_copy(nullptr); }) == line(5653));
  CHECK(Trapped([&] { table.prepend(bucket); }) == line(5654));
  CHECK(Trapped([&] { table.prepend_all(other); }) == line(5655));
  CHECK(Trapped([&] { table.rotate_left(1); }) == line(5656));
  CHECK(Trapped([&] { table.rotate_right(0); }) == line(5657));
}
