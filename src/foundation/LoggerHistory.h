// LoggerHistory: the log's ring of lines, apart from Logger.h because its container is costly to include.
#pragma once

#include "foundation/Logger.h"

#include <boost/circular_buffer.hpp>

/// Ring of the log's last lines, oldest first.
struct Logger_::LineBuffer : boost::circular_buffer<Logger_::HistoryEntry>
{
    using boost::circular_buffer<Logger_::HistoryEntry>::circular_buffer;
};
