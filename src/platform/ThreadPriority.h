#pragma once

namespace zelto {

// Lowers the calling thread's scheduling priority by `steps` nice steps, so that the user
// interface thread wins the cores from it. Linux gives each thread a nice value of its own; where
// the system has none per thread this does nothing. False when the priority was not changed.
bool lowerThreadPriority(int steps);

} // namespace zelto
