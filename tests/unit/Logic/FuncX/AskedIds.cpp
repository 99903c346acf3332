#include "Logic/FuncX/AskedIds.h"

#include "Logic/FuncX/FunctionTables.h"

namespace functest {

namespace {

using namespace functiontables;

void add(AskedIds& ids, const Look& look) {
    ids.images.insert({look.uSmallPngId, look.uLargePngId});
    ids.strings.insert(look.uDescId);
}

void add(AskedIds& ids, std::span<const Item> items) {
    for (const Item& item : items) {
        ids.images.insert({item.uImageId1, item.uImageId2});
        ids.strings.insert(item.uTextId);
    }
}

void addCircleFunctions(AskedIds& ids) {
    for (const CircleDescription* pFunction : kCircleFunctions) {
        add(ids, pFunction->look);
        add(ids, pFunction->items);
        ids.strings.insert(pFunction->statusTexts.begin(), pFunction->statusTexts.end());
    }
    ids.images.insert({kCursorOverlay.uOnPngId, kNumOverlay.uOnPngId});
    ids.strings.insert({IDS_PRESS, IDS_KBB_SECONDS, IDS_FAULT_HANGS, IDS_FAULT_RESTARTED, IDS_FAULT_SET_ASIDE});
}

void addWireless(AskedIds& ids) {
    for (const WirelessState& state : kWirelessStates) {
        ids.images.insert({state.uImageId1, state.uImageId2});
        ids.strings.insert(state.textIds.begin(), state.textIds.end());
    }
    ids.strings.insert(IDS_WIRELESS_NO_DEVICE);
}

void addOutputs(AskedIds& ids) {
    add(ids, kOutputFirst);
    add(ids, kOutputSecond);
    for (const OutputMode& mode : kOutputModes) {
        ids.strings.insert(mode.uNameId);
        for (const ImagePair& pair : {mode.custom, mode.needsSetup, mode.builtIn}) {
            ids.images.insert({pair.uSmallId, pair.uLargeId});
        }
    }
}

}  // namespace

AskedIds askedIds() {
    AskedIds ids;
    addCircleFunctions(ids);
    for (const Look* pLook : kOtherLooks) {
        add(ids, *pLook);
    }
    add(ids, kPowerPlans);
    addWireless(ids);
    addOutputs(ids);
    ids.strings.insert(IDS_BRIGHTNESS_LEVEL);
    ids.strings.erase(0);
    return ids;
}

}  // namespace functest
