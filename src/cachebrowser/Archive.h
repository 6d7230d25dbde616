// Archive.h - the binary archive of the Microsoft Foundation Classes: numbers, counted strings, and objects
// behind their class records. All numbers are little-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvelot {

enum class EArchiveError { None, EndOfFile, BadClass, BadSchema, BadFormat, WriteFailed };

// What an archive reads from or writes to.
class IArchiveFile {
public:
    virtual ~IArchiveFile() = default;
    // Up to size bytes; fewer only at the end of the file.
    virtual std::size_t Read(void* bytes, std::size_t size) = 0;
    virtual bool Write(std::string_view bytes) = 0;
};

// The first failure stays: what is read after it is zero or empty, what is written after it goes nowhere.
class CArchive {
public:
    enum EMode { load, store };

    CArchive(IArchiveFile& file, EMode mode);

    bool IsStoring() const { return m_nMode == store; }
    EArchiveError Error() const { return m_nError; }
    bool Failed() const { return m_nError != EArchiveError::None; }
    // Writes what still stands in the buffer; false when anything failed.
    bool Flush();

    std::uint8_t ReadByte() { return static_cast<std::uint8_t>(ReadNumber(1)); }
    std::uint16_t ReadWord() { return static_cast<std::uint16_t>(ReadNumber(2)); }
    std::int32_t ReadLong() { return static_cast<std::int32_t>(static_cast<std::uint32_t>(ReadNumber(4))); }
    // Of 16, 32 or 64 bits, each but the last with a greatest value that stands for "longer".
    std::uint64_t ReadCount();
    // UTF-16, or 8-bit text of the system's code page, as UTF-8. A lone surrogate keeps its three bytes.
    std::string ReadString();
    // The record in front of an object of the one class that is expected.
    void ReadObject(std::string_view className, std::uint16_t schema);

    void WriteByte(std::uint8_t number) { WriteNumber(number, 1); }
    void WriteWord(std::uint16_t number) { WriteNumber(number, 2); }
    void WriteLong(std::int32_t number) { WriteNumber(static_cast<std::uint32_t>(number), 4); }
    void WriteCount(std::uint64_t count);
    void WriteString(std::string_view text);
    void WriteObject(std::string_view className, std::uint16_t schema);

private:
    void Fail(EArchiveError error);
    bool ReadBytes(void* bytes, std::size_t size);
    std::uint64_t ReadNumber(int bytes);
    std::uint64_t ReadStringLength(bool& unicode);
    void WriteBytes(std::string_view bytes);
    void WriteNumber(std::uint64_t number, int bytes);
    void WriteStringLength(std::uint64_t units);

    IArchiveFile& m_file;
    EMode m_nMode;
    EArchiveError m_nError = EArchiveError::None;
    std::string m_buffer;
    std::size_t m_nRead = 0; // of the buffer, while loading
    // Classes and objects are numbered together, from 1, in the order in which they come.
    std::uint32_t m_nNextIndex = 1;
    std::vector<std::uint32_t> m_listClasses; // the numbers that are classes, ascending
};

} // namespace carvelot
