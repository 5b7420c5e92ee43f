#include "cli/interrupt.h"

namespace kestrel {
namespace {

constexpr int quit = SIGUSR1;  // wakes the waiting thread when it is no longer needed

}  // namespace

Interrupt::Interrupt() {
  sigemptyset(&awaited_);
  sigaddset(&awaited_, SIGINT);
  sigaddset(&awaited_, quit);
  pthread_sigmask(SIG_BLOCK, &awaited_, &before_);
  thread_ = std::thread([this] { wait(); });
}

Interrupt::~Interrupt() {
  stopping_ = true;
  pthread_kill(thread_.native_handle(), quit);
  thread_.join();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void Interrupt::wait() {
  for (;;) {
    int signal = 0;
    if (sigwait(&awaited_, &signal) != 0 || stopping_) return;
    if (signal == quit) continue;  // another program sent it
    if (!happened_.exchange(true)) continue;
    // As the system does it: the shell sees a program that was interrupted.
    std::signal(SIGINT, SIG_DFL);
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    pthread_sigmask(SIG_UNBLOCK, &interrupt, nullptr);
    std::raise(SIGINT);
  }
}

}  // namespace kestrel
