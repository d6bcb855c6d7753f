#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace labeler {

/// Calls `work` with pieces of [0, count) that together are all of it, on as many threads as the
/// machine runs at a time, this one among them; returns when all is done. The work may only read
/// what others read at the same time, and write what is its piece's own. An exception ends the work
/// early and is thrown on.
void in_parallel(std::size_t count,
                 const std::function<void(std::size_t begin, std::size_t end)>& work);

/// The same with each row.
template <class Row, class Work>
void for_each_in_parallel(std::vector<Row>& rows, Work work) {
  in_parallel(rows.size(), [&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) work(rows[i]);
  });
}

}  // namespace labeler
