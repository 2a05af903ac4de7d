// A gap buffer of UTF-16 units: the storage of the in-memory host's texts.
//
// The toolkit edits texts left to right (find, delete, insert, find again from just
// after the edit), appends one character at a time and reads single units. A gap
// kept at the last edit makes each of those O(1) amortised, where a plain array
// would move the whole tail at every edit and turn a substitution into O(n^2).
// Readers that consume a text from the front (a tag deleted at position 0) are
// served by a slack before the first unit: deleting a prefix moves nothing.
#ifndef XPTOOLKIT_MEMHOST_GAPBUFFER_H
#define XPTOOLKIT_MEMHOST_GAPBUFFER_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

namespace memhost {

// Storage layout: [slack | front units | gap | back units], that is the units are
// data_[begin_, gapStart_) followed by data_[gapEnd_, capacity_).
class GapBuffer {
 public:
  GapBuffer() = default;
  GapBuffer(const GapBuffer&) = delete;
  GapBuffer& operator=(const GapBuffer&) = delete;

  /// Number of units held.
  size_t size() const { return front() + (capacity_ - gapEnd_); }

  /// Units the storage holds without growing.
  size_t capacity() const { return capacity_; }

  /// The unit at `i` (i < size()).
  char16_t at(size_t i) const { return i < front() ? data_[begin_ + i] : data_[gapEnd_ + (i - front())]; }

  /// Removes every unit; keeps the storage.
  void clear() {
    begin_ = 0;
    gapStart_ = 0;
    gapEnd_ = capacity_;
  }

  /// Inserts `n` units before position `pos` (pos <= size()). `units` must not
  /// point into this buffer.
  void insert(size_t pos, const char16_t* units, size_t n) {
    if (n == 0) return;
    reserveGap(n);
    moveGap(pos);
    if (n == 1) {
      data_[gapStart_] = *units;  // the common case: one character appended
    } else {
      std::memcpy(data_.get() + gapStart_, units, n * sizeof(char16_t));
    }
    gapStart_ += n;
  }

  void append(const char16_t* units, size_t n) { insert(size(), units, n); }

  /// Removes `n` units from `pos` (the range must lie inside).
  void erase(size_t pos, size_t n) {
    if (n == 0) return;
    if (pos + n <= front() && pos < front() - (pos + n)) {
      // Inside the front run and nearer its start: shift the few units before the
      // range into the slack instead of the many after it into the gap.
      char16_t* d = data_.get();
      std::memmove(d + begin_ + n, d + begin_, pos * sizeof(char16_t));
      begin_ += n;
      return;
    }
    if (pos + n <= front()) {
      moveGap(pos + n);
      gapStart_ -= n;
      return;
    }
    moveGap(pos);
    gapEnd_ += n;
  }

  /// Copies `n` units from `pos` into `out`.
  void copyOut(size_t pos, size_t n, char16_t* out) const {
    if (n == 0) return;
    size_t before = pos < front() ? std::min(n, front() - pos) : 0;
    if (before) std::memcpy(out, data_.get() + begin_ + pos, before * sizeof(char16_t));
    if (n > before) {
      std::memcpy(out + before, data_.get() + gapEnd_ + (pos + before - front()), (n - before) * sizeof(char16_t));
    }
  }

  /// The units [pos, pos + n) as one contiguous run; moves the gap out of the
  /// range if it lies inside, towards whichever end is nearer.
  const char16_t* contiguous(size_t pos, size_t n) {
    if (front() > pos && front() < pos + n) moveGap(front() - pos < pos + n - front() ? pos : pos + n);
    return pos < front() || n == 0 ? data_.get() + begin_ + pos : data_.get() + gapEnd_ + (pos - front());
  }

 private:
  size_t front() const { return gapStart_ - begin_; }

  // Puts the gap after the first `pos` units.
  void moveGap(size_t pos) {
    char16_t* d = data_.get();
    if (pos < front()) {
      size_t n = front() - pos;
      std::memmove(d + gapEnd_ - n, d + begin_ + pos, n * sizeof(char16_t));
      gapStart_ -= n;
      gapEnd_ -= n;
    } else if (pos > front()) {
      size_t n = pos - front();
      std::memmove(d + gapStart_, d + gapEnd_, n * sizeof(char16_t));
      gapStart_ += n;
      gapEnd_ += n;
    }
  }

  // Grows geometrically so that appends stay amortised O(1); the slack is given
  // back to the gap on the way.
  void reserveGap(size_t n) {
    if (gapEnd_ - gapStart_ >= n) return;
    size_t used = size();
    size_t want = std::max<size_t>({16, used + n, capacity_ * 2});
    std::unique_ptr<char16_t[]> grown(new char16_t[want]);
    size_t tail = capacity_ - gapEnd_;
    if (front()) std::memcpy(grown.get(), data_.get() + begin_, front() * sizeof(char16_t));
    if (tail) std::memcpy(grown.get() + want - tail, data_.get() + gapEnd_, tail * sizeof(char16_t));
    gapStart_ = front();
    begin_ = 0;
    data_ = std::move(grown);
    gapEnd_ = want - tail;
    capacity_ = want;
  }

  std::unique_ptr<char16_t[]> data_;
  size_t capacity_ = 0;
  size_t begin_ = 0;
  size_t gapStart_ = 0;
  size_t gapEnd_ = 0;
};

}  // namespace memhost

#endif  // XPTOOLKIT_MEMHOST_GAPBUFFER_H
