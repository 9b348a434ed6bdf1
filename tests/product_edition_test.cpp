// The editions by product type.
#include "os/product_edition.h"

#include <algorithm>
#include <utility>

#include "os/registry_values.h"
#include "support.h"

namespace {

// clang-format off
constexpr std::pair<DWORD, std::string_view> kEditions[] = {
    {0x01, "Ultimate Edition"}, {0x02, "Home Basic Edition"}, {0x03, "Home Premium Edition"},
    {0x04, "Enterprise Edition"}, {0x05, "Home Basic Edition (N)"}, {0x06, "Business Edition"},
    {0x07, "Standard Edition"}, {0x08, "Datacenter Edition"}, {0x09, "Small Business Server"},
    {0x0A, "Enterprise Edition"}, {0x0B, "Starter Edition"},
    {0x0C, "Datacenter Edition (core installation)"},
    {0x0D, "Standard Edition (core installation)"},
    {0x0E, "Enterprise Edition (core installation)"},
    {0x0F, "Enterprise Edition for Itanium-based Systems"}, {0x10, "Business Edition (N)"},
    {0x11, "Web Server Edition"}, {0x12, "Cluster Server Edition"},
    {0x13, "Windows Storage Server 2008 R2 Essentials"}, {0x14, "Storage Server Express"},
    {0x15, "Storage Server Standard"}, {0x16, "Storage Server Workgroup"},
    {0x17, "Storage Server Enterprise"},
    {0x18, "Windows Server 2008 for Windows Essential Server Solutions"},
    {0x19, "Small Business Server Premium Edition"}, {0x1A, "Home Premium Edition (N)"},
    {0x1B, "Enterprise Edition (N)"}, {0x1C, "Ultimate Edition (N)"},
    {0x1D, "Web Server Edition (core installation)"},
    {0x1E, "Windows Essential Business Server Management Server"},
    {0x1F, "Windows Essential Business Server Security Server"},
    {0x20, "Windows Essential Business Server Messaging Server"}, {0x21, "Server Foundation"},
    {0x22, "Windows Home Server 2011"},
    {0x23, "Windows Server 2008 without Hyper-V for Windows Essential Server Solutions"},
    {0x24, "Server Standard without Hyper-V"},
    {0x25, "Server Datacenter without Hyper-V (full installation)"},
    {0x26, "Server Enterprise without Hyper-V  (full installation)"},
    {0x27, "Server Datacenter without Hyper-V (core installation)"},
    {0x28, "Server Standard without Hyper-V (core installation)"},
    {0x29, "Server Enterprise without Hyper-V (core installation)"},
    {0x2A, "Microsoft Hyper-V Server"}, {0x2B, "Storage Server Express (core installation)"},
    {0x2C, "Storage Server Standard (core installation)"},
    {0x2D, "Storage Server Workgroup (core installation)"},
    {0x2E, "Storage Server Enterprise (core installation)"}, {0x2F, "Starter Edition (N)"},
    {0x30, "Professional"}, {0x31, "Professional (N)"},
    {0x32, "Windows Small Business Server 2011 Essentials"}, {0x33, "Server For SB Solutions"},
    {0x34, "Server Solutions Premium"}, {0x35, "Server Solutions Premium (core installation)"},
    {0x36, "Server For SB Solutions EM"}, {0x37, "Server For SB Solutions EM"},
    {0x38, "Windows MultiPoint Server"}, {0x3B, "Windows Essential Server Solution Management"},
    {0x3C, "Windows Essential Server Solution Additional"},
    {0x3D, "Windows Essential Server Solution Management SVC"},
    {0x3E, "Windows Essential Server Solution Additional SVC"},
    {0x3F, "Small Business Server Premium (core installation)"},
    {0x40, "Cluster Server Hyper Core V"}, {0x42, "Starter Edition (E)"},
    {0x43, "Home Basic Edition (E)"}, {0x44, "Home Premium Edition (E)"},
    {0x45, "Professional (E)"}, {0x46, "Enterprise Edition (E)"}, {0x47, "Ultimate Edition (E)"},
    {0x48, "Enterprise Edition Evaluation"},
    {0x4C, "Windows MultiPoint Server Standard (full installation)"},
    {0x4D, "Windows MultiPoint Server Premium (full installation)"},
    {0x4F, "Server Standard (evaluation installation)"},
    {0x54, "Enterprise Edition Evaluation (N)"},
    {0x5F, "Storage Server Workgroup (evaluation installation)"},
    {0x60, "Storage Server Standard (evaluation installation)"}, {0x62, "Core (N)"},
    {0x63, "Core (China)"}, {0x64, "Core (Single Language)"}, {0x65, "Core"},
    {0x67, "Professional with Media Center"},
};
// clang-format on

class ProductEditionTest : public MachineTest {
protected:
    void Expect(std::string_view text, std::string_view identifier) {
        qb_support::Text actualText("stale");
        qb_support::Text actualIdentifier("stale");
        EXPECT_TRUE(qb_support::GetOsEdition(10, 0, actualText, actualIdentifier));
        EXPECT_EQ(actualText.View(), text) << m_machine.productInfo;
        EXPECT_EQ(actualIdentifier.View(), identifier);
    }
};

TEST_F(ProductEditionTest, EveryProductType) {
    for (m_machine.productInfo = 0; m_machine.productInfo < 0x110; ++m_machine.productInfo) {
        const auto* const row = std::ranges::find(kEditions, m_machine.productInfo,
                                                  [](const auto& entry) { return entry.first; });
        Expect(row != std::end(kEditions) ? row->second : "Enterprise", "Enterprise");
    }
}

TEST_F(ProductEditionTest, WithoutProductTypes) {
    m_machine.available.getProductInfo = false;
    Expect("Enterprise", "Enterprise");
    m_machine.localMachine.at(qb_support::kCurrentVersionKey).values.erase("EditionID");
    Expect("", "");
}

}  // namespace
