// What the log keeps of a job as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "door/log/job.h"

namespace lorimat::door {

std::string LinesRecord(const std::vector<std::string>& lines);
std::string NumbersRecord(const DeviceNumbers& numbers);
std::string DocumentRecord(const JobDocument& document);
std::string AnswersRecord(const std::vector<LineAnswer>& answers);

// The same back; nlohmann::json::exception for a text that is none of these.
std::vector<std::string> ReadLines(std::string_view text);
DeviceNumbers ReadNumbers(std::string_view text);
JobDocument ReadDocument(std::string_view text);
std::vector<LineAnswer> ReadAnswers(std::string_view text);

}  // namespace lorimat::door
