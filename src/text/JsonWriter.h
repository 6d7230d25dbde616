// One JSON value, written as it comes, with a line feed behind it. Texts that are no valid Unicode show
// U+FFFD.
#pragma once

#include "platform/CodePage.h"
#include "text/TextColumns.h"

#include <rapidjson/writer.h>

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

namespace carvelot {

// What RapidJSON writes to: a block that goes out when it is full.
class CBlockStream {
public:
    using Ch = char;

    explicit CBlockStream(std::ostream& out) : m_out(out) { m_block.reserve(kBlock); }
    ~CBlockStream() { Send(); }
    CBlockStream(const CBlockStream&) = delete;
    CBlockStream& operator=(const CBlockStream&) = delete;

    void Put(char c) {
        if (m_block.size() == kBlock) {
            Send();
        }
        m_block.push_back(c);
    }
    void Put(std::string_view text) {
        if (m_block.size() + text.size() > kBlock) {
            Send();
        }
        m_block.append(text);
    }
    void Flush() {}
    // Whether all blocks so far went out.
    bool IsTaken() const { return m_out.good(); }

private:
    static constexpr std::size_t kBlock = 1U << 16U;

    void Send() {
        m_out.write(m_block.data(), static_cast<std::streamsize>(m_block.size()));
        m_block.clear();
    }

    std::ostream& m_out;
    std::string m_block;
};

// RapidJSON's own hands on what it got without a look whether there was any.
class CJsonMemory {
public:
    static const bool kNeedFree = true;

    void* Malloc(std::size_t size) { return size == 0 ? nullptr : Had(std::malloc(size)); }
    void* Realloc(void* block, std::size_t /*before*/, std::size_t size) {
        if (size == 0) {
            Free(block);
            return nullptr;
        }
        return Had(std::realloc(block, size));
    }
    static void Free(void* block) { std::free(block); }

private:
    static void* Had(void* block) {
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        return block;
    }
};
using CJsonEvents = rapidjson::Writer<CBlockStream, rapidjson::UTF8<>, rapidjson::UTF8<>, CJsonMemory>;

class CJsonWriter {
public:
    explicit CJsonWriter(std::ostream& out) : m_stream(out), m_writer(m_stream) {}
    ~CJsonWriter() { m_stream.Put('\n'); }
    CJsonWriter(const CJsonWriter&) = delete;
    CJsonWriter& operator=(const CJsonWriter&) = delete;

    // Opens an object or a list for as long as it lives. What is thrown out of it leaves it open: it may want
    // a value.
    class CObject {
    public:
        explicit CObject(CJsonWriter& json) : m_json(json) { m_json.m_writer.StartObject(); }
        ~CObject() {
            if (std::uncaught_exceptions() == m_nThrown) {
                m_json.m_writer.EndObject();
            }
        }
        CObject(const CObject&) = delete;
        CObject& operator=(const CObject&) = delete;

    private:
        CJsonWriter& m_json;
        const int m_nThrown = std::uncaught_exceptions();
    };
    class CArray {
    public:
        explicit CArray(CJsonWriter& json) : m_json(json) { m_json.m_writer.StartArray(); }
        ~CArray() {
            if (std::uncaught_exceptions() == m_nThrown) {
                m_json.m_writer.EndArray();
            }
        }
        CArray(const CArray&) = delete;
        CArray& operator=(const CArray&) = delete;

    private:
        CJsonWriter& m_json;
        const int m_nThrown = std::uncaught_exceptions();
    };

    void Key(std::string_view key) { m_writer.Key(key.data(), static_cast<rapidjson::SizeType>(key.size())); }
    void StartObject() { m_writer.StartObject(); }
    void EndObject() { m_writer.EndObject(); }
    void StartArray() { m_writer.StartArray(); }
    void EndArray() { m_writer.EndArray(); }

    void Value(std::string_view text) {
        if (platform::IsValidUtf8(text)) {
            Put(text);
        } else {
            Put(WithReplacements(text));
        }
    }
    void Value(std::int32_t n) { m_writer.Int(n); }
    void Value(std::uint32_t n) { m_writer.Uint(n); }
    void Value(std::int64_t n) { m_writer.Int64(n); }
    void Value(std::uint64_t n) { m_writer.Uint64(n); }
    void Value(float seconds) { m_writer.Double(static_cast<double>(seconds)); }
    void Value(bool b) { m_writer.Bool(b); }
    template <class T> void Value(std::optional<T> value) {
        if (value) {
            Value(*value);
        } else {
            m_writer.Null();
        }
    }

    template <class T> void Member(std::string_view key, T value) {
        Key(key);
        Value(value);
    }

private:
    void Put(std::string_view text) {
        m_writer.String(text.data() == nullptr ? "" : text.data(),
                        static_cast<rapidjson::SizeType>(text.size()));
    }

    CBlockStream m_stream;
    CJsonEvents m_writer;
};

} // namespace carvelot
