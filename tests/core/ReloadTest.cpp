#include <dlfcn.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

bool IsLoaded() {
  void* library = dlopen(LIBRARY, RTLD_NOW | RTLD_NOLOAD);
  if (library != nullptr) dlclose(library);
  return library != nullptr;
}

TEST(Reload, WorksAsOftenAsItIsLoaded) {
  ASSERT_FALSE(IsLoaded()) << "this program must not link the library";
  for (int round = 0; round < 3; ++round) {
    void* plugin = dlopen(PLUGIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(plugin, nullptr) << dlerror();
    EXPECT_TRUE(IsLoaded());
    auto* const countTypes = reinterpret_cast<int (*)()>(dlsym(plugin, "CountTypes"));
    ASSERT_NE(countTypes, nullptr);
    EXPECT_EQ(countTypes(), 84);

    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back([countTypes] { EXPECT_EQ(countTypes(), 84); });
    for (std::thread& thread : threads) thread.join();

    EXPECT_EQ(dlclose(plugin), 0);
    EXPECT_FALSE(IsLoaded()) << "unloading the plug-in must unload the library";
  }
}

}  // namespace
