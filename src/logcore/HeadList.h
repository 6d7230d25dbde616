// A list that is filled from its head, so that its newest entry comes first.
#pragma once

#include <cstddef>
#include <vector>

namespace carvelot {

template <class T> class CHeadList {
public:
    void AddHead(T value) { m_oldestFirst.push_back(value); }
    std::size_t size() const { return m_oldestFirst.size(); }
    bool empty() const { return m_oldestFirst.empty(); }
    T operator[](std::size_t i) const { return m_oldestFirst[m_oldestFirst.size() - 1 - i]; }
    auto begin() const { return m_oldestFirst.rbegin(); }
    auto end() const { return m_oldestFirst.rend(); }

private:
    std::vector<T> m_oldestFirst;
};

} // namespace carvelot
