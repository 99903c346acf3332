// Compile-time checks of the functions' tables; no code to run.
#include "Logic/FuncX/FunctionTables.h"

namespace functiontables {

namespace {

// Every item has one bit, every bit has its own item, and the order is that of the bits.
template <typename Row>
consteval bool oneAscendingBitEach(std::span<const Row> rows) {
    DWORD dwPrevious = 0;
    for (const Row& row : rows) {
        if (row.dwBit == 0 || (row.dwBit & (row.dwBit - 1)) != 0 || row.dwBit <= dwPrevious) {
            return false;
        }
        dwPrevious = row.dwBit;
    }
    return true;
}

// The value is the number of the bit, counted from dwBase.
consteval bool valueIsBitNumber(std::span<const Item> rows, DWORD dwBase) {
    for (const Item& row : rows) {
        if (row.dwBit != DWORD{1} << (row.dwValue - dwBase)) {
            return false;
        }
    }
    return true;
}

consteval bool textFollowsBit(std::span<const Item> rows, UINT uBase) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].uTextId != uBase + i) {
            return false;
        }
    }
    return true;
}

consteval bool imagesAreUnique() {
    std::array<UINT, 2 * (kOutputFirst.size() + kOutputSecond.size())> ids{};
    std::size_t used = 0;
    for (const auto rows : {std::span<const Item>(kOutputFirst), std::span<const Item>(kOutputSecond)}) {
        for (const Item& row : rows) {
            ids[used++] = row.uImageId1;
            ids[used++] = row.uImageId2;
        }
    }
    for (std::size_t i = 0; i < used; ++i) {
        for (std::size_t j = i + 1; j < used; ++j) {
            if (ids[i] == ids[j]) {
                return false;
            }
        }
    }
    return true;
}

template <typename Row>
consteval DWORD allBits(std::span<const Row> rows) {
    DWORD dwBits = 0;
    for (const Row& row : rows) {
        dwBits |= row.dwBit;
    }
    return dwBits;
}

consteval bool isSound(const CircleDescription& description) {
    const bool bBothItems = description.itemRule == ItemRule::BothItems;
    return oneAscendingBitEach(description.items) && valueIsBitNumber(description.items, 0) &&
           (!bBothItems || description.items.size() == 2) &&
           (!description.hasState() || description.statusTexts.size() == description.items.size()) &&
           (description.defaultRule != DefaultRule::Listed || description.defaults.size() == description.items.size());
}

// The program shows what the contract lets a plug-in offer.
consteval bool keepsTheContract(const CircleDescription& description) {
    const fenwyn::Function* const pContract = fenwyn::findFunction(description.pszName);
    const auto infoRule =
        description.itemRule == ItemRule::BothItems ? fenwyn::InfoRule::Exact : fenwyn::InfoRule::Mask;
    return pContract != nullptr && pContract->infoRule == infoRule && pContract->info == allBits(description.items) &&
           pContract->hasExport(FENWYN_GET_CURRENT_ITEM) == description.hasState();
}

consteval bool circleFunctionsAreSound() {
    for (const CircleDescription* const pDescription : kCircleFunctions) {
        if (!isSound(*pDescription) || !keepsTheContract(*pDescription)) {
            return false;
        }
    }
    return true;
}

static_assert(circleFunctionsAreSound());
static_assert(oneAscendingBitEach(std::span<const Item>(kPowerPlans)) && valueIsBitNumber(kPowerPlans, 0));
static_assert(oneAscendingBitEach(std::span<const WirelessState>(kWirelessStates)));
static_assert(oneAscendingBitEach(std::span<const Item>(kOutputFirst)) && valueIsBitNumber(kOutputFirst, 0));
static_assert(oneAscendingBitEach(std::span<const Item>(kOutputSecond)) && valueIsBitNumber(kOutputSecond, 32));
static_assert(textFollowsBit(kOutputFirst, IDS_OUTPUT_FIRST_BASE));
static_assert(textFollowsBit(kOutputSecond, IDS_OUTPUT_SECOND_BASE));
static_assert(kOutputFirst.size() + kOutputSecond.size() == 46 && imagesAreUnique());
static_assert(allBits(std::span<const Item>(kPowerPlans)) == fenwyn::findFunction(L"PowerPlan")->info);
static_assert(allBits(std::span<const WirelessState>(kWirelessStates)) == fenwyn::findFunction(L"Wireless")->info);
static_assert(allBits(std::span<const Item>(kOutputFirst)) == fenwyn::findFunction(L"Output")->info);
static_assert(allBits(std::span<const Item>(kOutputSecond)) == fenwyn::findFunction(L"Output")->info2);
static_assert(kOutputModes.size() == FENWYN_MODE_SAVE + 1);

}  // namespace

}  // namespace functiontables
