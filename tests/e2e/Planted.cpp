// A library that the end-to-end runs put beside the program under the names of the system's own.
extern "C" __declspec(dllexport) int planted() {
    return 1;
}
