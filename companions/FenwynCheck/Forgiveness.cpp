#include "Forgiveness.h"

#include "PluginFaults.h"

namespace machine {

std::wstring rememberedFaults() {
    std::wstring text;
    for (const fenwyn::PluginFault& fault : fenwyn::readFaults()) {
        text += fault.plugin + L"\n    " + (fault.setAside ? L"set aside" : L"not set aside") + L"; function " +
                fault.function + L" ended Fenwyn at " + fault.when + L" in " + fault.exportName + L": " + fault.reason +
                L"\n";
    }
    return text;
}

ExitCode forgivePlugins(const Outside& outside) {
    const std::wstring remembered = rememberedFaults();
    if (remembered.empty()) {
        outside.tell(L"No plug-in has ended Fenwyn.\n");
        return kNothingToDo;
    }
    if (const LSTATUS error = fenwyn::forgiveFaults(); error != ERROR_SUCCESS) {
        outside.tell(L"The registry refused (error " + std::to_wstring(error) + L").\n");
        return kNotWritten;
    }
    outside.tell(L"Forgiven; from Fenwyn's next start on they are loaded again:\n" + remembered);
    return kWell;
}

}  // namespace machine
