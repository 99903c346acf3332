#include "Binding.h"

#include <memory>
#include <unordered_map>
#include <utility>

namespace framework {
namespace {

using BindingMap = std::unordered_map<HWND, std::shared_ptr<Binding>>;

// A plain pointer, freed with the last entry: a global window object that is destroyed at the very end of the process
// must still find its entry when thread-local objects no longer exist.
thread_local BindingMap* g_pBindings = nullptr;

}  // namespace

std::shared_ptr<Binding> findBinding(HWND window) {
    if (g_pBindings == nullptr) {
        return nullptr;
    }
    const auto found = g_pBindings->find(window);
    return found == g_pBindings->end() ? nullptr : found->second;
}

void addBinding(HWND window, std::shared_ptr<Binding> binding) {
    if (g_pBindings != nullptr) {
        g_pBindings->insert_or_assign(window, std::move(binding));
        return;
    }
    auto first = std::make_unique<BindingMap>();
    first->insert_or_assign(window, std::move(binding));
    g_pBindings = first.release();
}

void removeBinding(HWND window) {
    if (g_pBindings == nullptr) {
        return;
    }
    g_pBindings->erase(window);
    if (g_pBindings->empty()) {
        delete std::exchange(g_pBindings, nullptr);
    }
}

}  // namespace framework
