#include "assets/models/DynamicMeshAsset.h"

void DynamicMeshAsset::startLoad() {}
