#include <VekBase/Signal.h>
#include <cstdio>

int main()
{
    vek::Signal<void(const char*)> signal;
    const vek::Connection connection = signal.Connect([](const char* text) { std::puts(text); });
    signal.Emit("Hello from the base library");
}
