// Ctrl-C and its like: an end that is asked for, so that whoever works can leave things in order.
#pragma once

namespace korvex::cli {

/// Thrown by what waits when an end is asked for.
struct Interrupted {};

/// While one lives, SIGINT, SIGTERM and SIGHUP ask for an end instead of making one (but for a SIGHUP that
/// was ignored from the start, as under nohup). There is one at a time.
class Interruptible {
 public:
  /// Throws Failure.
  Interruptible();
  ~Interruptible();
  Interruptible(const Interruptible&) = delete;
  Interruptible& operator=(const Interruptible&) = delete;
};

/// Whether an end was asked for, from any thread.
bool is_interrupted();

/// Waits until something can be read from a descriptor, or its end is reached. Throws Interrupted.
void await_input(int descriptor);
/// Whether that would take time.
bool must_await_input(int descriptor);

}  // namespace korvex::cli
