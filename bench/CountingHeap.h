#pragma once

#include <cstddef>

/// Counts what is allocated in this program, by whatever library. For one thread.
namespace bench {

/// Starts to count, from nothing.
void countHeap();
/// Stops, and returns the most bytes that were in use at once since countHeap(), with what the allocator adds.
std::size_t countedPeak();

} // namespace bench
