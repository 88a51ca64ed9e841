// `main` of the test programs that start real servers.
#include "tests/interop/own_world.h"

#include <gmock/gmock.h>

int main(int count, char** arguments) {
    testing::InitGoogleMock(&count, arguments);
    lumbrine::interop::enterOwnWorld();
    return RUN_ALL_TESTS();
}
