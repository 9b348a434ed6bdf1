// The Banner section: where to send the report, and the privacy statement.
#include <string_view>

#include "core/collector.h"

namespace qb_support {

namespace {

constexpr std::size_t kWidth = 72;

constexpr std::string_view kEmailLine =
    "<" QBSUPPORT_SUPPORT_EMAIL "> along with a concise description of the problem.";
static_assert(kEmailLine.size() <= kWidth, "the support e-mail address is too long");

// In the report, each line is filled with spaces to the full width.
constexpr std::string_view kLines[] = {
    "The following support information is collected in order to help",
    "Quenbar support team replicate and troubleshoot technical problems.",
    "",
    "Please save this information to a file and e-mail that file to",
    kEmailLine,
    "",
    "Privacy statement: This information will be kept confidential and will",
    "only be used to reproduce the problem you are reporting. The information",
    "does not include any passwords or other sensitive data.",
};

void AppendRule(CText& result) {
    result.Fill('=', kWidth);
    result << "\r\n";
}

}  // namespace

bool CQbSupport::GetBannerInfo(CText& result) {
    AppendRule(result);
    for (const std::string_view line : kLines) {
        result << line;
        result.Fill(' ', kWidth - line.size());
        result << "\r\n";
    }
    AppendRule(result);
    return true;
}

}  // namespace qb_support
