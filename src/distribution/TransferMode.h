#pragma once

namespace zelto {

// What a job does with its files. The numbers are the directions the queue keeps: a put of
// chosen files (the browser's, or the queue's resend), a get, a copy between two servers, and
// one site of a distribution.
enum class TransferMode { Put = 0, Get = 1, Copy = 2, DistributionPut = 3 };

} // namespace zelto
