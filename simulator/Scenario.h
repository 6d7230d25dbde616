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
    CScenario(CStateFile& file, std::uint32_t nProcess, std::string strUser)
        : m_file(file), m_nProcess(nProcess), m_strUser(std::move(strUser)) {}

    // The steps of the next order.
    std::vector<CStep> NextRound();
    // What happens when the caches have been cleared from outside for the nth time.
    std::vector<CStep> Cleared(std::uint32_t nClearings);

private:
    void Add(std::string strText, std::function<void()> fnDo = {});
    void Call(const std::string& strFunction, const std::string& strCaller, int nLevel);
    void Return(const std::string& strFunction, int nCode, int nLevel);
    void UseCache(std::size_t nCache);
    void AddCacheRow(std::size_t nCache, std::vector<unsigned char> row);
    void FetchCacheRow(std::size_t nCache);

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
