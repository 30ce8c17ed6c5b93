// The collections: what each operation does, and that every kind does the same where it is told to.
#include "core/Array.h"
#include "core/BucketTable.h"
#include "core/Cursor.h"
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
T Make(int value);
template <>
int Make<int>(int value) {
  return value;
}
template <>
String Make<String>(int value) {
  return String(std::to_string(value).c_str());
}

template <class T, class C>
C Numbers(int count) {
  C all;
  for (int i = 1; i <= count; ++i)
    all.append(Make<T>(i));
  return all;
}

int Descending(const void *a, const void *b) {
  const int x = *static_cast<const int *>(a), y = *static_cast<const int *>(b);
  return x < y ? 1 : x > y ? -1 : 0;
}

int ByText(const void *a, const void *b) {
  return (*static_cast<String *const *>(a))->compare_exact(**static_cast<String *const *>(b));
}

} // namespace

TEST_CASE_TEMPLATE_DEFINE("every collection walks, grows, shrinks and turns alike", C, common) {
  using T = std::remove_reference_t<decltype(*C().first_value())>;
  const C five = Numbers<T, C>(5);

  SUBCASE("empty") {
    C all;
    CollectionIterator it{7, 8, 9};
    CHECK(Values{all.first(it) == nullptr, all.last(it) == nullptr, it.current, all.begin(it), all.next(it) == nullptr,
                 all.end(it), all.prev(it) == nullptr} == Values{1, 1, 7, 0, 1, 0, 1});
    CHECK(Values{all.first_value() == nullptr, all.last_value() == nullptr, all.random() == nullptr} ==
          Values{1, 1, 1});
    CHECK(Values{all.remove_first(), all.remove_last(), all.remove_current(it)} == Values{0, 0, 0});
    CHECK(all.take_current(it) == T());
    all.rotate_left(1);
    all.keep_first(0);
    CHECK(All(all) == "");
  }
  SUBCASE("looking around") {
    CollectionIterator it;
    CHECK(*five.first(it) == Make<T>(1));
    CHECK(five.prev_value(it) == nullptr);
    CHECK(*five.next(it) == Make<T>(2));
    CHECK(*five.current_value(it) == Make<T>(2));
    CHECK(*five.next_value(it) == Make<T>(3));
    CHECK(*five.prev_value(it) == Make<T>(1));
    CHECK(*five.last(it) == Make<T>(5));
    CHECK(Values{five.next(it) == nullptr, five.current_value(it) == nullptr} == Values{1, 1});
  }
  SUBCASE("both ends") {
    C all = five;
    const auto after = [&](auto edit, const char *left) {
      edit(all);
      CHECK(All(all) == left);
    };
    all.prepend(Make<T>(0));
    CHECK(*all.append_copy(nullptr) == T());
    CHECK(Values{all.count, all.remove_last()} == Values{7, 1});
    after([&](C &c) { c.append_all(five), c.prepend_all(five); }, "1 2 3 4 5 0 1 2 3 4 5 1 2 3 4 5");
    after([](C &c) { c.remove_first_n(7), c.remove_last_n(6), c.remove_last_n(-1); }, "2 3 4");
    after([](C &c) { c.append_all(c); }, "2 3 4 2 3 4");
    after([](C &c) { c.keep_first(3), c.prepend_all(c); }, "2 3 4 2 3 4");
    after([](C &c) { c.append(*c.first_value()), c.prepend(*c.last_value()); }, "2 2 3 4 2 3 4 2");
    after([](C &c) { c.keep_last(3), c.keep_last(9); }, "3 4 2");
    after([](C &c) { c.remove_first_n(99); }, "");
    after([&](C &c) { c = five, c.keep_first(-1); }, "");
  }
  SUBCASE("removal during a walk") {
    C all = five;
    CollectionIterator it;
    all.first(it);
    all.next(it);
    CHECK(Values{all.remove_current(it), all.remove_current(it)} == Values{1, 0});
    CHECK(*all.next(it) == Make<T>(3));
    CHECK(all.take_current(it) == Make<T>(3));
    CHECK(*all.prev(it) == Make<T>(1));
    CHECK(All(all) == "1 4 5");
    while (all.next(it) != nullptr)
      all.remove_current(it);
    CHECK(All(all) == "1");
  }
  SUBCASE("rotation") {
    const std::string turned[] = {"1 2 3 4 5", "2 3 4 5 1", "3 4 5 1 2", "4 5 1 2 3", "5 1 2 3 4"};
    for (int n = -7; n <= 7; ++n) {
      C left = five, right = five;
      left.rotate_left(n);
      right.rotate_right(n);
      CHECK(All(left) == turned[(n + 10) % 5]);
      CHECK(All(right) == turned[(10 - n) % 5]);
    }
  }
  SUBCASE("copies and moves") {
    C copy = five;
    copy.remove_first();
    CHECK(All(five) == "1 2 3 4 5");
    C moved = std::move(copy);
    CHECK(All(moved) == "2 3 4 5");
    CHECK(copy.is_empty());
    copy = std::move(moved);
    CHECK(All(copy) == "2 3 4 5");
    CHECK(copy.random() != nullptr);
  }
}
TEST_CASE_TEMPLATE_INVOKE(common, List<int>, List<String>, Array<int>, Array<String>, Vector<int>, Vector<String>);

TEST_CASE_TEMPLATE_DEFINE("indexed collections insert, remove and move by position", C, indexed) {
  using T = std::remove_reference_t<decltype(*C().first_value())>;
  C all = Numbers<T, C>(5);
  const auto after = [&](auto edit, const char *left) {
    edit(all);
    CHECK(All(all) == left);
  };
  after([](C &c) { c.insert(2, Make<T>(9)), c.insert(99, Make<T>(8)), c.insert(-1, Make<T>(7)); }, "7 1 2 9 3 4 5 8");
  // Elements of its own, which move meanwhile.
  after([](C &c) { c.insert(3, c.at(6)), c.insert(4, c.at(0)); }, "7 1 2 5 7 9 3 4 5 8");
  after([](C &c) { c.remove_range(-3, 1), c.remove_range(6, 99), c.remove_range(4, 3); }, "2 5 7 9 3 4");
  after([](C &c) { CHECK(c.take_at(2) == Make<T>(7)); }, "2 5 9 3 4");
  CHECK((all.take_at(5) == T() && all.take_at(-1) == T()));
  after([](C &c) { c.remove_at(9); }, "2 5 9 3 4");
  after([](C &c) { c.move_down(0, 3); }, "5 9 3 2 4");
  after([](C &c) { c.move_up(1, 99); }, "5 4 9 3 2");
  after([](C &c) { c.move_down(3, 3), c.move_up(4, 1), c.swap(0, 4), c.swap(0, 5), c.swap(-1, 0); }, "2 4 9 3 5");
  all.insert_copy(1, nullptr);
  CHECK(all.at(1) == T());
  all.insert_slot(0) = Make<T>(6);
  all.append_slot() = Make<T>(1);
  after([](C &c) { c.remove_at(2); }, "6 2 4 9 3 5 1");
  after([](C &c) { c.set_count(3); }, "6 2 4");
  all.set_count(5);
  CHECK(all.checked_at(4) == T());
  CHECK(all.element_or_null(5) == nullptr);
  all.reset_count(2);
  CHECK(all.at(0) == T());
  all.set_count(-1);
  CHECK(all.is_empty());
  all.move_down(5, -1); // swapped cells in front of an empty block
  all.move_up(5, -1);

  Cursor<T> cursor(all = Numbers<T, C>(3));
  cursor.attach_at_end(&all);
  CHECK(Values{cursor.value() == nullptr, cursor.retreat(), cursor.index()} == Values{1, 1, 2});
  while (cursor.retreat())
    CHECK(cursor.value() == &all.at(cursor.index()));
  CHECK(Values{cursor.index(), cursor.advance(), cursor.index()} == Values{-1, 1, 0});
  cursor.attach(nullptr);
  CHECK_FALSE(cursor.advance());
}
TEST_CASE_TEMPLATE_INVOKE(indexed, Array<int>, Array<String>, Vector<int>, Vector<String>);

TEST_CASE("a vector's room grows by half around its contents, and shrinks only when large") {
  Vector<String> all;
  struct Row {
    int reserve, capacity, front;
  };
  for (const Row &row : {Row{1, 1, 0}, Row{4, 6, 1}, Row{6, 6, 0}, Row{2000, 3000, 500}, Row{500, 3000, 500},
                         Row{750, 3000, 500}, Row{501, 751, 125}, Row{100, 751, 125}}) {
    CAPTURE(row.reserve);
    all.reserve(row.reserve);
    CHECK(all.capacity() == row.capacity);
    CHECK(all.front_room() == row.front);
  }
  all.append("a");
  all.insert(0, "b"); // the front is no roomier than the back
  CHECK(all.front_room() == 125);
  all.set_count(600);
  all.set_count(2);
  CHECK(all.capacity() == 751);
  CHECK(All(all) == "b a");
  all.reserve(751);
  CHECK(all.front_room() == 0);

  Vector<int> numbers = Numbers<int, Vector<int>>(40);
  numbers.reserve(60);
  const int capacity = numbers.capacity();
  for (int i = 0; numbers.front_room() > 0; ++i)
    numbers.insert(0, i);
  CHECK(numbers.capacity() == capacity);
  numbers.set_count(3000);
  numbers.reserve(501); // never below what it holds
  CHECK(numbers.count == 3000);
  Vector<String> copy(all);
  CHECK(copy.capacity() == 3);
  copy.append_all(all);
  copy.rotate_left(1);
  CHECK(Values{copy.capacity(), copy.front_room()} == Values{6, 1});
}

TEST_CASE("sorting") {
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
  Stack<String> stack = Numbers<String, Stack<String>>(5);
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
  Vector<int> three = Numbers<int, Vector<int>>(3);
  Array<String> none;
  Vector<short> unnamed;
  CHECK(Trapped([&] { three.at(3); }) == "Vector<int>[3]\nmax_index = 2");
  CHECK(Trapped([&] { none.checked_at(-1); }) == "Vector<String>[-1]\nmax_index = -1");
  CHECK(Trapped([&] { unnamed.check_index(0); }) == "Vector<?>[0]\nmax_index = -1");
}

TEST_CASE("a table keeps one value for each key, in the order of insertion") {
  BucketTable<bool, String> set;
  CHECK_FALSE(set.insert("a", true)); // no chains yet
  CHECK(set.hash_index("a") == INT32_MIN);
  set.reset(3);
  for (const char *key : {"one", "two", "three", "four", "five", "Five"})
    CHECK(set.insert(key, true));
  CHECK(Values{set.insert("two", false), set.count} == Values{0, 6});
  CHECK((set.is_table() && set.key_size() == sizeof(String) && set.value_size() == 1));
  CHECK(set.hash_index("one") == static_cast<int32_t>(String("one").checksum() % 3u));

  std::string keys;
  Cursor<Bucket<bool, String>> cursor(set);
  while (cursor.advance())
    keys += std::string(cursor.value()->key) + (cursor.value()->value ? " " : "! ");
  CHECK(keys == "one two! three four five Five ");
  CollectionIterator it;
  set.first(it);
  set.next(it);
  CHECK(set.remove_current(it));
  CHECK(set.next(it)->key == "three");
  CHECK(Values{set.remove_first(), set.remove_last()} == Values{1, 1});
  CHECK(set.last_value()->key == "five");
  CHECK(set.insert("two", true));
  set.clear();
  CHECK(Values{set.count, set.insert("a", true)} == Values{0, 0});

  BucketTable<int, int> table, other;
  const Bucket<int, int> bucket;
  auto line = [](int n) { return "internal error core " + std::to_string(n); };
  CHECK(Trapped([&] { table.append_copy(&bucket); }) == line(5650));
  CHECK(Trapped([&] { table.append(bucket); }) == line(5651));
  CHECK(Trapped([&] { table.append_all(other); }) == line(5652));
  CHECK(Trapped([&] { table.prepend_copy(nullptr); }) == line(5653));
  CHECK(Trapped([&] { table.prepend(bucket); }) == line(5654));
  CHECK(Trapped([&] { table.prepend_all(other); }) == line(5655));
  CHECK(Trapped([&] { table.rotate_left(1); }) == line(5656));
  CHECK(Trapped([&] { table.rotate_right(0); }) == line(5657));
}
