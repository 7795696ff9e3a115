#pragma once
#include <cstdint>

// The channel's lock among the senders of one user: held from the first
// write until the listener has taken the message. The system lets go of it
// when its holder ends, so a sender that dies can't block the others.
class LcOmTrackBackSenderLock {
public:
  // Waits up to timeoutMs for the lock.
  explicit LcOmTrackBackSenderLock(int timeoutMs);
  ~LcOmTrackBackSenderLock();
  LcOmTrackBackSenderLock(const LcOmTrackBackSenderLock&) = delete;
  LcOmTrackBackSenderLock& operator=(const LcOmTrackBackSenderLock&) = delete;

  bool IsHeld() const { return held; }
  // Another sender has it. A lock that can't be had at all (no folder for it)
  // is not busy: the channel may work without it.
  bool IsBusy() const { return handle != -1 && !held; }

private:
  intptr_t handle = -1;
  bool held = false;
};
