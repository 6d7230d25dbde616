// Scenario.h - what a simulated process works at: sales orders, one a round, told line by line to its debug
// log.
#pragma once

#include "simulator/ProcessState.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace simulator {

enum class ESpeaker { Main, Worker };

// One thing that happens: a line for the log while tracing is on, and what is done to the caches either way.
struct CStep {
    ESpeaker m_nSpeaker = ESpeaker::Worker;
    std::string m_strText;
    std::function<void()> m_fnDo;
};

class CScenario {
public:
    CScenario(CStateFile& file, std::uint32_t process, std::string user)
        : m_file(file), m_nProcess(process), m_strUser(std::move(user)) {}

    // The steps of the next order.
    std::vector<CStep> NextRound();
    // What happens when the caches have been cleared from outside for the nth time.
    std::vector<CStep> Cleared(std::uint32_t clearings);

private:
    void Add(std::string text, std::function<void()> action = {});
    void Call(const std::string& function, const std::string& caller, int level);
    void Return(const std::string& function, int code, int level);
    void UseCache(std::size_t cacheNumber);
    void AddCacheRow(std::size_t cacheNumber, std::vector<unsigned char> row);
    void FetchCacheRow(std::size_t cacheNumber);

    CStateFile& m_file;
    std::uint32_t m_nProcess;
    std::string m_strUser;
    std::uint32_t m_nClearings = 0;
    std::uint32_t m_nHandles = 0;
    std::int32_t m_nOrder = 1000;
    CCacheState m_caches[2];
    std::vector<CStep> m_listSteps;
};

} // namespace simulator
