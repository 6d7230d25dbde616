// A list that is filled from its head, so that its newest entry comes first.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <vector>

namespace carvelot {

// A log can list each of its calls at each of its returns: from `most` entries on AddHead throws
// std::length_error, before such a list takes all of the machine's memory.
template <class T, std::size_t most = std::size_t{1} << 28U> class CHeadList {
public:
    void AddHead(T value) {
        if (m_oldestFirst.size() >= most) {
            throw std::length_error("head list");
        }
        m_oldestFirst.push_back(value);
    }
    std::size_t size() const { return m_oldestFirst.size(); }
    bool empty() const { return m_oldestFirst.empty(); }
    T operator[](std::size_t i) const { return m_oldestFirst[m_oldestFirst.size() - 1 - i]; }
    auto begin() const { return m_oldestFirst.rbegin(); }
    auto end() const { return m_oldestFirst.rend(); }

private:
    std::vector<T> m_oldestFirst;
};

} // namespace carvelot
