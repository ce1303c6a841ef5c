// Work for registers that is measured or counted: a receipt of five lines, rows of articles.
#pragma once

#include <string>
#include <vector>

#include "register/client/virtual_register.h"

// A shop at a fixed time; an empty name for one in memory.
lorimat::RegisterSettings WorkSettings(const std::string& file = {});

// Begins, sells five lines and is paid in cash. Ends the program when anything is refused.
void SellFiveLines(RtfClientInterface& device);

// Articles with codes of 13 digits, and the same as rows for an upload.
std::vector<lorimat::Article> Articles(int count);
std::vector<std::string> ArticleRows(int count);
// In one transfer. Ends the program when anything is refused.
void UploadArticles(RtfClientInterface& device, const std::vector<std::string>& rows);
