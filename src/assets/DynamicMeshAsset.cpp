#include "assets/DynamicMeshAsset.h"

void DynamicMeshAsset::startLoad() {}
