#pragma once

#include <string>

#include <cpl_error.h>

namespace qz {

// While it lives, what GDAL and PROJ complain about is kept here and not printed.
class QuietGdal {
public:
    QuietGdal() { CPLPushErrorHandlerEx(&collect, this); }
    ~QuietGdal() { CPLPopErrorHandler(); }
    QuietGdal(const QuietGdal&) = delete;
    QuietGdal& operator=(const QuietGdal&) = delete;

    // The last complaint; empty when there was none.
    [[nodiscard]] const std::string& message() const noexcept { return message_; }

private:
    static void CPL_STDCALL collect(CPLErr severity, CPLErrorNum number, const char* text);

    std::string message_;
};

} // namespace qz
