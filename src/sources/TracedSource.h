// Another source, of whose bytes those that were read first and last are kept, so that the log can be told
// again from another one.
#pragma once

#include "sources/LogSource.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace carvelot {

class CTracedSource final : public ILogSource {
public:
    // `last`: how many bytes at least are kept of the last ones.
    CTracedSource(ILogSource& source, std::size_t first, std::size_t last)
        : m_source(source), m_nFirst(first), m_nLast(last) {}

    std::size_t Read(void* buffer, std::size_t size) override {
        const std::size_t got = m_source.Read(buffer, size);
        const std::string_view bytes(static_cast<const char*>(buffer), got);
        if (m_nPosition == m_strFirst.size() && m_strFirst.size() < m_nFirst) {
            m_strFirst.append(bytes.substr(0, m_nFirst - m_strFirst.size()));
        }
        if (got >= m_nLast) {
            m_strLast.assign(bytes.substr(got - m_nLast));
        } else {
            // What is moved is at most as much as came since it was moved last.
            if (m_strLast.size() >= 2 * m_nLast) {
                m_strLast.erase(0, m_strLast.size() - m_nLast);
            }
            m_strLast.append(bytes);
        }
        m_nPosition += got;
        return got;
    }
    void Rewind() override {
        m_source.Rewind();
        Begin(0);
    }
    void RewindForGood() override {
        m_source.RewindForGood();
        Begin(0);
    }
    bool Seek(std::uint64_t position) override {
        if (!m_source.Seek(position)) {
            return false;
        }
        Begin(position);
        return true;
    }
    std::uint64_t Size() const override { return m_source.Size(); }
    SourceProgress Progress() const override { return m_source.Progress(); }
    std::string Failure() const override { return m_source.Failure(); }

    // Since reading began, those read first, if it began with the first byte.
    const std::string& First() const { return m_strFirst; }
    // And the last ones, up to where it has come.
    const std::string& Last() const { return m_strLast; }
    std::uint64_t Position() const { return m_nPosition; }

private:
    void Begin(std::uint64_t position) {
        m_nPosition = position;
        m_strFirst.clear();
        m_strLast.clear();
    }

    ILogSource& m_source;
    const std::size_t m_nFirst;
    const std::size_t m_nLast;
    std::uint64_t m_nPosition = 0;
    std::string m_strFirst;
    std::string m_strLast;
};

} // namespace carvelot
