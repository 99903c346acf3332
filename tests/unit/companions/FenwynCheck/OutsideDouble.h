// The world outside of FenwynCheck, as a test wants it: children that answer as told, and a machine of its own.
#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Inspection.h"
#include "Outside.h"
#include "SampleList.h"
#include "support/RegistryRoom.h"
#include "support/TempFolder.h"

namespace machinetest {

class OutsideDouble {
 public:
    OutsideDouble() {
        m_outside.folder = m_folder.path().wstring();
        m_outside.runSelf = [this](const std::wstring& arguments, DWORD) { return _child(arguments); };
        m_outside.runElevated = [this](const std::wstring& arguments) {
            elevated.push_back(arguments);
            return elevatedCode;
        };
        m_outside.writeSettings = [this](HKEY root, std::span<const common::Setting> settings) {
            return refusesMachine && root == HKEY_LOCAL_MACHINE ? ERROR_ACCESS_DENIED
                                                                : common::writeSettings(root, settings);
        };
        m_outside.removeSettings = [this](HKEY root, std::span<const common::Setting> settings) {
            return refusesMachine && root == HKEY_LOCAL_MACHINE ? ERROR_ACCESS_DENIED
                                                                : common::removeSettings(root, settings);
        };
        m_outside.ask = [this](const std::wstring& question) {
            questions.push_back(question);
            return answer;
        };
        m_outside.tell = [this](const std::wstring& text) { told += text; };
    }

    [[nodiscard]] const machine::Outside& outside() const { return m_outside; }
    [[nodiscard]] const support::TempFolder& folder() const { return m_folder; }

    // The family's plug-in is there, and its child answers so.
    void offer(const std::wstring& function, machine::Outcome outcome, const std::wstring& text = {}) {
        std::filesystem::create_directories(m_folder / L"plugins");
        support::TempFolder::write(machine::samplePlugin(m_outside.folder, function), "x");
        children[L"--inspect \"" + function + L"\""] = {true, static_cast<DWORD>(outcome), text};
    }
    [[nodiscard]] bool tells(const std::wstring& words) const { return told.find(words) != std::wstring::npos; }
    [[nodiscard]] std::string narrow() const { return {told.begin(), told.end()}; }

    std::map<std::wstring, machine::ChildResult> children;  // by the beginning of their command line
    std::vector<std::wstring> started;
    std::vector<std::wstring> questions;
    std::vector<std::wstring> elevated;
    std::optional<DWORD> elevatedCode;
    bool answer = false;
    bool refusesMachine = false;  // as for who is no administrator
    std::wstring told;

 private:
    machine::ChildResult _child(const std::wstring& arguments) {
        started.push_back(arguments);
        const auto found =
            std::ranges::find_if(children, [&](const auto& child) { return arguments.starts_with(child.first); });
        return found != children.end() ? found->second : machine::ChildResult{true, 99, {}};
    }

    support::TempFolder m_folder;
    machine::Outside m_outside;
};

}  // namespace machinetest
