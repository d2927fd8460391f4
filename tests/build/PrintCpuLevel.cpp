#include <ZrConvertersLib/CpuLevel.h>

#include <cstdio>

int main() {
  std::puts(ZrConvertersLib::GetCpuLevel());
}
