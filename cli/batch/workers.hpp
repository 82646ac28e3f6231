// Threads that do what they are given, in any order.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace korvex::cli::batch {

class Workers {
 public:
  /// Fewer where the system has no more; without any, run() does the work.
  explicit Workers(unsigned count) {
    threads_.reserve(count);
    // Stacks must not take all addresses where they are limited; what the work needs is held free meanwhile.
    constexpr std::size_t kForWork = std::size_t{1} << 26;
    const std::unique_ptr<char[]> held(new (std::nothrow) char[kForWork]);
    try {
      while (threads_.size() < count) threads_.emplace_back([this] { work(); });
    } catch (const std::exception&) {  // std::system_error, or memory for it ran out
    }
  }
  /// What was given and not begun is not done.
  ~Workers() {
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    something_to_do_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  template <class Task>
  std::future<std::invoke_result_t<Task>> run(Task task) {
    // std::function wants what can be copied.
    auto packaged = std::make_shared<std::packaged_task<std::invoke_result_t<Task>()>>(std::move(task));
    auto result = packaged->get_future();
    if (threads_.empty()) {
      (*packaged)();
      return result;
    }
    {
      const std::lock_guard lock(mutex_);
      tasks_.emplace_back([packaged] { (*packaged)(); });
    }
    something_to_do_.notify_one();
    return result;
  }

 private:
  void work() {
    for (;;) {
      std::unique_lock lock(mutex_);
      something_to_do_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
      if (stopping_) return;
      const std::function<void()> task = std::move(tasks_.front());
      tasks_.pop_front();
      lock.unlock();
      task();
    }
  }

  std::mutex mutex_;
  std::condition_variable something_to_do_;
  std::deque<std::function<void()>> tasks_;
  bool stopping_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace korvex::cli::batch
