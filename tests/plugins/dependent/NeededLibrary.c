/* What DependentPlugin.dll needs. */
__declspec(dllexport) long neededAnswer(void);

__declspec(dllexport) long neededAnswer(void) {
    return 0;
}
