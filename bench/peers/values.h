// The values of one statement's parameters, as libpq takes texts.
#ifndef BENCH_PEERS_VALUES_H_
#define BENCH_PEERS_VALUES_H_

#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <type_traits>

namespace bench {

// Numbers are written into it without the heap; texts are pointed to, so they must outlive it.
class Values {
 public:
  template <typename... Ts>
  explicit Values(const Ts&... values) {
    static_assert(sizeof...(values) <= kMost);
    (Add(values), ...);
  }
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  int count() const { return count_; }
  const char* const* data() const { return texts_.data(); }

 private:
  static constexpr std::size_t kMost = 34;

  void Add(const std::string& text) { texts_[static_cast<std::size_t>(count_++)] = text.c_str(); }

  template <typename T, typename = std::enable_if_t<std::is_integral_v<T>>>
  void Add(T number) {
    const auto place = static_cast<std::size_t>(count_++);
    auto& digits = numbers_[place];
    *std::to_chars(digits.data(), digits.data() + digits.size() - 1, number).ptr = '\0';
    texts_[place] = digits.data();
  }

  std::array<std::array<char, 24>, kMost> numbers_;
  std::array<const char*, kMost> texts_;
  int count_ = 0;
};

}  // namespace bench

#endif  // BENCH_PEERS_VALUES_H_
