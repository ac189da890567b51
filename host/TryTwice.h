// TryTwice: for what keeps the program going, such as the list of the answers that wait.
//
// What has just failed for want of memory has let go of some. Where not even that is enough, the
// run ends.

#pragma once

#include <new>

namespace kal::host {

// The work changes nothing where it finds no memory, or goes on where it was.
template <class Work>
void TryTwice(Work work) {
  try {
    work();
  } catch (const std::bad_alloc&) {
    work();
  }
}

}  // namespace kal::host
