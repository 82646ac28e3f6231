#include "interruption.hpp"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <system_error>

#include "failure.hpp"

namespace korvex::cli {
namespace {

// What a signal handler touches. The pipe wakes whoever waits: a flag alone could be set between looking at
// it and waiting.
std::atomic<bool> asked = false;
std::atomic<int> read_end = -1;
std::atomic<int> write_end = -1;
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};
std::array<struct sigaction, kSignals.size()> old_actions;

extern "C" void ask_for_an_end(int) {
  const int error = errno;
  asked = true;
  (void)!write(write_end, "", 1);
  errno = error;
}

}  // namespace

Interruptible::Interruptible() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    throw Failure("Cannot make a pipe: " + std::generic_category().message(errno) + ".");
  }
  read_end = ends[0];
  write_end = ends[1];
  asked = false;
  struct sigaction action {};
  action.sa_handler = ask_for_an_end;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], nullptr, &old_actions[i]);
    const bool is_under_nohup = kSignals[i] == SIGHUP && old_actions[i].sa_handler == SIG_IGN;
    if (!is_under_nohup) sigaction(kSignals[i], &action, nullptr);
  }
}

Interruptible::~Interruptible() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &old_actions[i], nullptr);
  close(write_end.exchange(-1));
  close(read_end.exchange(-1));
}

bool is_interrupted() {
  return asked;
}

void await_input(int descriptor) {
  // The byte in the pipe stays there, so that every thread sees it. Where there is no pipe, poll() passes it
  // over.
  std::array<pollfd, 2> waiting = {pollfd{descriptor, POLLIN, 0}, pollfd{read_end, POLLIN, 0}};
  for (;;) {
    const int ready = poll(waiting.data(), waiting.size(), -1);
    if (ready < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (waiting[1].revents != 0) throw Interrupted{};
    return;  // reading says what is wrong, if anything is
  }
}

bool must_await_input(int descriptor) {
  pollfd waiting{descriptor, POLLIN, 0};
  return poll(&waiting, 1, 0) == 0;
}

}  // namespace korvex::cli
