#include "LogPeer.h"

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <memory>
#include <string>

namespace peer {

namespace {

std::shared_ptr<spdlog::logger> s_log;

}  // namespace

void open(const char* file) {
    s_log = spdlog::basic_logger_mt("bench", file, true);
    s_log->set_pattern("%s(%#):  [%l] (%!): %v");
    s_log->set_level(spdlog::level::trace);
}

void written(const char* name, int value) {
    SPDLOG_LOGGER_CALL(s_log, spdlog::level::trace, "{} = {}", name, value);
}

}  // namespace peer
