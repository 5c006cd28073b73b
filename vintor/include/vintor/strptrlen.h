// StrPtrLen: a view of characters that owns nothing, held as a begin pointer
// and a one-past-end pointer in that order (callers lay tables of views out in
// static data, so the layout is fixed). The viewed text must outlive the view.
#ifndef VINTOR_STRPTRLEN_H
#define VINTOR_STRPTRLEN_H

#include <cstddef>
#include <string>

#include <vintor/export.h>

namespace Vintor {

template <class CharT>
class StrPtrLenT {
public:
    constexpr StrPtrLenT() noexcept : begin_(nullptr), end_(nullptr) {}
    constexpr StrPtrLenT(CharT* begin, CharT* end) noexcept : begin_(begin), end_(end) {}
    constexpr StrPtrLenT(CharT* begin, std::size_t length) noexcept
        : begin_(begin), end_(begin + length) {}

    CharT* Begin() const noexcept { return begin_; }
    CharT* End() const noexcept { return end_; }
    std::size_t Size() const noexcept { return static_cast<std::size_t>(end_ - begin_); }
    bool Empty() const noexcept { return begin_ == end_; }

    // Moves the start forward by count characters, at most to the end.
    void Advance(std::size_t count) noexcept { begin_ += count < Size() ? count : Size(); }

    std::string ToStdString() const { return std::string(begin_, end_); }

    // True if both views have the same length and equal characters, ASCII case ignored.
    bool EqualIgnoreCase(StrPtrLenT const& other) const noexcept {
        if (Size() != other.Size()) {
            return false;
        }
        for (std::size_t i = 0; i < Size(); ++i) {
            if (Lower(begin_[i]) != Lower(other.begin_[i])) {
                return false;
            }
        }
        return true;
    }

    bool Equal(StrPtrLenT const& other) const noexcept {
        if (Size() != other.Size()) {
            return false;
        }
        for (std::size_t i = 0; i < Size(); ++i) {
            if (begin_[i] != other.begin_[i]) {
                return false;
            }
        }
        return true;
    }

private:
    static char Lower(char c) noexcept { return (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c; }

    CharT* begin_;
    CharT* end_;
};

class StrPtrLen : public StrPtrLenT<char const> {
public:
    constexpr StrPtrLen() noexcept = default;
    constexpr StrPtrLen(char const* begin, char const* end) noexcept : StrPtrLenT(begin, end) {}
    constexpr StrPtrLen(char const* begin, std::size_t length) noexcept
        : StrPtrLenT(begin, length) {}
    // A view of the string's characters; the string must outlive the view.
    explicit StrPtrLen(std::string const& text) noexcept
        : StrPtrLenT(text.data(), text.data() + text.size()) {}
};

static_assert(sizeof(StrPtrLen) == 2 * sizeof(char const*), "StrPtrLen is two pointers");

}  // namespace Vintor

#endif
