// Sends many requests, of which one in twenty meets a fault: a reset, an error of the server, a late answer
// or none. SoakProgram [REQUESTS]. It fails where a future does not get ready, or an answer is another than
// its request asked for, or memory grows.
#include "Network/Servers.h"
#include "VekAppCore/Network/HttpService.h"
#include <QCoreApplication>
#include <QUrlQuery>
#include <cstdio>
#include <deque>
#include <fstream>
#include <map>
#include <string>

using namespace vek;
using namespace std::chrono_literals;

namespace
{
constexpr std::size_t mostOutstanding = 100;

const char* GetPath(int number)
{
    if (number % 20 != 0)
        return "/bytes/6f6b"; // "ok"
    constexpr const char* faults[] = {"/close", "/status/500", "/late"};
    return number % 400 == 0 ? "/hang" : faults[number / 20 % 3];
}

/// Whether it ended as it should.
bool Check(const std::string& path, std::future<QString> future, std::map<std::string, int>& results)
{
    if (future.wait_for(60s) != std::future_status::ready)
        return false;
    std::string result;
    try
    {
        result = future.get().toStdString();
    }
    catch (const Network::HttpException& exception)
    {
        result = exception.GetStatusCode() != 0 ? "500" : exception.what();
    }
    ++results[path + ": " + result];
    // Qt hands the next request to a connection that is about to be closed, and a hanging one holds up
    // others.
    if (result == "Connection closed" || result == "Operation canceled")
        return true;
    return path == "/bytes/6f6b" ? result == "ok" : path == "/late" ? result == "late" : result == "500";
}

/// Of this process, in KiB.
long GetMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:"))
            return std::stol(line.substr(6));
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int count = argc > 1 ? std::stoi(argv[1]) : 100'000;
    TestSupport::ScriptedServer server;
    server.Forget();
    Network::HttpService service;
    service.SetTransferTimeout(500ms);
    service.Start();
    std::deque<std::pair<std::string, std::future<QString>>> outstanding;
    std::map<std::string, int> results;
    int wrong = 0;
    long memoryEarly = 0;
    const auto takeOne = [&] {
        auto [path, future] = std::move(outstanding.front());
        outstanding.pop_front();
        wrong += !Check(path, std::move(future), results);
    };
    for (int i = 1; i <= count; ++i)
    {
        const char* const path = GetPath(i);
        outstanding.emplace_back(path, service.SendGetRequest(server.GetUrl(path), {}));
        if (outstanding.size() >= mostOutstanding)
            takeOne();
        if (i == count / 5)
            memoryEarly = GetMemory();
    }
    while (!outstanding.empty())
        takeOne();
    for (const auto& [result, times] : results)
        std::fprintf(stderr, "%8d  %s\n", times, result.c_str());
    const long memory = GetMemory();
    std::fprintf(stderr, "%d requests, %d wrong; memory %ld KiB after a fifth, %ld KiB at the end\n", count,
                 wrong, memoryEarly, memory);
    const bool isMostlyRight =
        results["/bytes/6f6b: ok"] > count / 10 * 8; // slow machines lose more to resets
    // Few requests tell nothing: allocators of sanitizers keep what is freed for a while.
    const bool isBounded = count < 50'000 || memory < memoryEarly + memoryEarly / 2;
    return wrong == 0 && isMostlyRight && isBounded ? 0 : 1;
}
