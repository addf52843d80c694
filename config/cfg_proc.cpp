#include "config/cfg_proc.h"

void CfgStore::CfgProc(int, int) {}
