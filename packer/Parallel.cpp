#include "packer/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <utility>
#include <vector>

#ifdef _WIN32
#include "core/Windows.h" // this compiler's library has no threads there
#else
#include <system_error>
#include <thread>
#endif

namespace korb::packer {

namespace {

struct Work {
  std::span<const Task> tasks;
  std::atomic<size_t> next = 0;
  std::vector<std::exception_ptr> failures; // one for each task

  void Run() {
    for (size_t i = next++; i < tasks.size(); i = next++)
      try {
        tasks[i]();
      } catch (...) {
        failures[i] = std::current_exception();
      }
  }
};

#ifdef _WIN32

size_t Processors() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwNumberOfProcessors;
}

// A thread that works until nothing is left; the destructor waits for it.
class Helper {
public:
  explicit Helper(Work &work) : thread_(CreateThread(nullptr, 0, Main, &work, 0, nullptr)) {}
  Helper(Helper &&other) noexcept : thread_(std::exchange(other.thread_, nullptr)) {}
  ~Helper() {
    if (!thread_)
      return;
    WaitForSingleObject(thread_, INFINITE);
    CloseHandle(thread_);
  }

private:
  static DWORD WINAPI Main(void *work) {
    static_cast<Work *>(work)->Run();
    return 0;
  }

  HANDLE thread_;
};

#else

size_t Processors() {
  return std::thread::hardware_concurrency();
}

class Helper {
public:
  explicit Helper(Work &work) {
    try {
      thread_ = std::thread([&work] { work.Run(); });
    } catch (const std::system_error &) { // the caller does it
    }
  }
  Helper(Helper &&) = default;
  ~Helper() {
    if (thread_.joinable())
      thread_.join();
  }

private:
  std::thread thread_;
};

#endif

} // namespace

void RunTogether(std::span<const Task> tasks) {
  static const size_t processors = Processors();
  Work work{tasks, {}, std::vector<std::exception_ptr>(tasks.size())};
  {
    std::vector<Helper> helpers;
    helpers.reserve(tasks.size());
    for (size_t i = 1; i < std::min(tasks.size(), processors); ++i)
      helpers.emplace_back(work);
    work.Run();
  }
  for (const std::exception_ptr &failure : work.failures)
    if (failure)
      std::rethrow_exception(failure);
}

} // namespace korb::packer
