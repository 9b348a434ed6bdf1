#include "os/product_edition.h"

#include <algorithm>

#include "os/registry_values.h"
#include "platform/named_function.h"

namespace qb_support {

namespace {

struct ProductEdition {
    DWORD productType;
    const char* text;
};

// The texts for the product types that GetProductInfo reports. They are not all Windows' own names:
// some repeat, 0x13 and 0x26 look wrong, and 0x26 has two spaces in a row. All of this is intended,
// because support staff search reports for these exact texts.
// clang-format off
constexpr ProductEdition ProductEditionTable[] = {
    {0x01, "Ultimate Edition"},  // PRODUCT_ULTIMATE
    {0x02, "Home Basic Edition"},  // PRODUCT_HOME_BASIC
    {0x03, "Home Premium Edition"},  // PRODUCT_HOME_PREMIUM
    {0x04, "Enterprise Edition"},  // PRODUCT_ENTERPRISE
    {0x05, "Home Basic Edition (N)"},  // PRODUCT_HOME_BASIC_N
    {0x06, "Business Edition"},  // PRODUCT_BUSINESS
    {0x07, "Standard Edition"},  // PRODUCT_STANDARD_SERVER
    {0x08, "Datacenter Edition"},  // PRODUCT_DATACENTER_SERVER
    {0x09, "Small Business Server"},  // PRODUCT_SMALLBUSINESS_SERVER
    {0x0A, "Enterprise Edition"},  // PRODUCT_ENTERPRISE_SERVER
    {0x0B, "Starter Edition"},  // PRODUCT_STARTER
    {0x0C, "Datacenter Edition (core installation)"},  // PRODUCT_DATACENTER_SERVER_CORE
    {0x0D, "Standard Edition (core installation)"},  // PRODUCT_STANDARD_SERVER_CORE
    {0x0E, "Enterprise Edition (core installation)"},  // PRODUCT_ENTERPRISE_SERVER_CORE
    {0x0F, "Enterprise Edition for Itanium-based Systems"},  // PRODUCT_ENTERPRISE_SERVER_IA64
    {0x10, "Business Edition (N)"},  // PRODUCT_BUSINESS_N
    {0x11, "Web Server Edition"},  // PRODUCT_WEB_SERVER
    {0x12, "Cluster Server Edition"},  // PRODUCT_CLUSTER_SERVER
    {0x13, "Windows Storage Server 2008 R2 Essentials"},  // PRODUCT_HOME_SERVER
    {0x14, "Storage Server Express"},  // PRODUCT_STORAGE_EXPRESS_SERVER
    {0x15, "Storage Server Standard"},  // PRODUCT_STORAGE_STANDARD_SERVER
    {0x16, "Storage Server Workgroup"},  // PRODUCT_STORAGE_WORKGROUP_SERVER
    {0x17, "Storage Server Enterprise"},  // PRODUCT_STORAGE_ENTERPRISE_SERVER
    {0x18, "Windows Server 2008 for Windows Essential Server Solutions"},  // PRODUCT_SERVER_FOR_SMALLBUSINESS
    {0x19, "Small Business Server Premium Edition"},  // PRODUCT_SMALLBUSINESS_SERVER_PREMIUM
    {0x1A, "Home Premium Edition (N)"},  // PRODUCT_HOME_PREMIUM_N
    {0x1B, "Enterprise Edition (N)"},  // PRODUCT_ENTERPRISE_N
    {0x1C, "Ultimate Edition (N)"},  // PRODUCT_ULTIMATE_N
    {0x1D, "Web Server Edition (core installation)"},  // PRODUCT_WEB_SERVER_CORE
    {0x1E, "Windows Essential Business Server Management Server"},  // PRODUCT_MEDIUMBUSINESS_SERVER_MANAGEMENT
    {0x1F, "Windows Essential Business Server Security Server"},  // PRODUCT_MEDIUMBUSINESS_SERVER_SECURITY
    {0x20, "Windows Essential Business Server Messaging Server"},  // PRODUCT_MEDIUMBUSINESS_SERVER_MESSAGING
    {0x21, "Server Foundation"},  // PRODUCT_SERVER_FOUNDATION
    {0x22, "Windows Home Server 2011"},  // PRODUCT_HOME_PREMIUM_SERVER
    {0x23, "Windows Server 2008 without Hyper-V for Windows Essential Server Solutions"},  // PRODUCT_SERVER_FOR_SMALLBUSINESS_V
    {0x24, "Server Standard without Hyper-V"},  // PRODUCT_STANDARD_SERVER_V
    {0x25, "Server Datacenter without Hyper-V (full installation)"},  // PRODUCT_DATACENTER_SERVER_V
    {0x26, "Server Enterprise without Hyper-V  (full installation)"},  // PRODUCT_ENTERPRISE_SERVER_V
    {0x27, "Server Datacenter without Hyper-V (core installation)"},  // PRODUCT_DATACENTER_SERVER_CORE_V
    {0x28, "Server Standard without Hyper-V (core installation)"},  // PRODUCT_STANDARD_SERVER_CORE_V
    {0x29, "Server Enterprise without Hyper-V (core installation)"},  // PRODUCT_ENTERPRISE_SERVER_CORE_V
    {0x2A, "Microsoft Hyper-V Server"},  // PRODUCT_HYPERV
    {0x2B, "Storage Server Express (core installation)"},  // PRODUCT_STORAGE_EXPRESS_SERVER_CORE
    {0x2C, "Storage Server Standard (core installation)"},  // PRODUCT_STORAGE_STANDARD_SERVER_CORE
    {0x2D, "Storage Server Workgroup (core installation)"},  // PRODUCT_STORAGE_WORKGROUP_SERVER_CORE
    {0x2E, "Storage Server Enterprise (core installation)"},  // PRODUCT_STORAGE_ENTERPRISE_SERVER_CORE
    {0x2F, "Starter Edition (N)"},  // PRODUCT_STARTER_N
    {0x30, "Professional"},  // PRODUCT_PROFESSIONAL
    {0x31, "Professional (N)"},  // PRODUCT_PROFESSIONAL_N
    {0x32, "Windows Small Business Server 2011 Essentials"},  // PRODUCT_SB_SOLUTION_SERVER
    {0x33, "Server For SB Solutions"},  // PRODUCT_SERVER_FOR_SB_SOLUTIONS
    {0x34, "Server Solutions Premium"},  // PRODUCT_STANDARD_SERVER_SOLUTIONS
    {0x35, "Server Solutions Premium (core installation)"},  // PRODUCT_STANDARD_SERVER_SOLUTIONS_CORE
    {0x36, "Server For SB Solutions EM"},  // PRODUCT_SB_SOLUTION_SERVER_EM
    {0x37, "Server For SB Solutions EM"},  // PRODUCT_SERVER_FOR_SB_SOLUTIONS_EM
    {0x38, "Windows MultiPoint Server"},  // PRODUCT_SOLUTION_EMBEDDEDSERVER
    {0x3B, "Windows Essential Server Solution Management"},
    {0x3C, "Windows Essential Server Solution Additional"},  // PRODUCT_ESSENTIALBUSINESS_SERVER_ADDL
    {0x3D, "Windows Essential Server Solution Management SVC"},
    {0x3E, "Windows Essential Server Solution Additional SVC"},  // PRODUCT_ESSENTIALBUSINESS_SERVER_ADDLSVC
    {0x3F, "Small Business Server Premium (core installation)"},  // PRODUCT_SMALLBUSINESS_SERVER_PREMIUM_CORE
    {0x40, "Cluster Server Hyper Core V"},  // PRODUCT_CLUSTER_SERVER_V
    {0x42, "Starter Edition (E)"},  // PRODUCT_STARTER_E
    {0x43, "Home Basic Edition (E)"},  // PRODUCT_HOME_BASIC_E
    {0x44, "Home Premium Edition (E)"},  // PRODUCT_HOME_PREMIUM_E
    {0x45, "Professional (E)"},  // PRODUCT_PROFESSIONAL_E
    {0x46, "Enterprise Edition (E)"},  // PRODUCT_ENTERPRISE_E
    {0x47, "Ultimate Edition (E)"},  // PRODUCT_ULTIMATE_E
    {0x48, "Enterprise Edition Evaluation"},  // PRODUCT_ENTERPRISE_EVALUATION
    {0x4C, "Windows MultiPoint Server Standard (full installation)"},  // PRODUCT_MULTIPOINT_STANDARD_SERVER
    {0x4D, "Windows MultiPoint Server Premium (full installation)"},  // PRODUCT_MULTIPOINT_PREMIUM_SERVER
    {0x4F, "Server Standard (evaluation installation)"},  // PRODUCT_STANDARD_EVALUATION_SERVER
    {0x54, "Enterprise Edition Evaluation (N)"},  // PRODUCT_ENTERPRISE_N_EVALUATION
    {0x5F, "Storage Server Workgroup (evaluation installation)"},  // PRODUCT_STORAGE_WORKGROUP_EVALUATION_SERVER
    {0x60, "Storage Server Standard (evaluation installation)"},  // PRODUCT_STORAGE_STANDARD_EVALUATION_SERVER
    {0x62, "Core (N)"},  // PRODUCT_CORE_N
    {0x63, "Core (China)"},  // PRODUCT_CORE_COUNTRYSPECIFIC
    {0x64, "Core (Single Language)"},  // PRODUCT_CORE_SINGLELANGUAGE
    {0x65, "Core"},  // PRODUCT_CORE
    {0x67, "Professional with Media Center"},  // PRODUCT_PROFESSIONAL_WMC
};
// clang-format on

// The system's product type, or 0 on a system that has no GetProductInfo.
DWORD QueryProductType(DWORD majorVersion, DWORD minorVersion) {
    DWORD productType = 0;
    auto* const getProductInfo =
        FindFunction<decltype(GetProductInfo)>(GetModuleHandleA("kernel32.dll"), "GetProductInfo");
    if (getProductInfo != nullptr) {
        getProductInfo(majorVersion, minorVersion, 0, 0, &productType);
    }
    return productType;
}

}  // namespace

bool GetOsEdition(std::uint32_t majorVersion, std::uint32_t minorVersion, CText& editionText,
                  CText& editionId) {
    editionText.Clear();
    ReadRegistryString(kCurrentVersionKey, "EditionID", editionId);
    const DWORD productType = QueryProductType(majorVersion, minorVersion);
    const auto* const edition =
        std::ranges::find(ProductEditionTable, productType, &ProductEdition::productType);
    if (edition != std::end(ProductEditionTable)) {
        editionText << edition->text;
    } else {
        editionText << editionId;
    }
    return true;
}

}  // namespace qb_support
