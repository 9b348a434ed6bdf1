// The Banner section: who reads the report and what becomes of it.
#include <string_view>

#include "core/collector.h"

namespace qb_support {

namespace {

constexpr std::size_t kWidth = 72;

void AppendLine(Text& result, std::string_view line) {
    result << line;
    result.Fill(' ', kWidth - line.size());
    result << "\r\n";
}

void AppendRule(Text& result) {
    result.Fill('=', kWidth);
    result << "\r\n";
}

}  // namespace

bool CQbSupport::GetBannerInfo(Text& result) {
    constexpr std::string_view kEmailLine =
        "<" QBSUPPORT_SUPPORT_EMAIL "> along with a concise description of the problem.";
    static_assert(kEmailLine.size() <= kWidth, "the support e-mail address is too long");

    AppendRule(result);
    AppendLine(result, "The following support information is collected in order to help");
    AppendLine(result, "Quenbar support team replicate and troubleshoot technical problems.");
    AppendLine(result, "");
    AppendLine(result, "Please save this information to a file and e-mail that file to");
    AppendLine(result, kEmailLine);
    AppendLine(result, "");
    AppendLine(result, "Privacy statement: This information will be kept confidential and will");
    AppendLine(result, "only be used to reproduce the problem you are reporting. The information");
    AppendLine(result, "does not include any passwords or other sensitive data.");
    AppendRule(result);
    return true;
}

}  // namespace qb_support
