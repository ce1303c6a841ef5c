// Row selector of RtfClientInterface::DownloadTable and UploadTable.
#pragma once

struct ManagerDownloadTableRowType {
  enum Enum {
    kRow = 0,      // the row of the given number
    kFirst = 1,    // the first row of the table
    kLast = 2,     // the last row of the table
    kNextRow = 4,  // the row behind the one read last
  };
};
