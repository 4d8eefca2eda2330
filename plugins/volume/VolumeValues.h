#pragma once

#include "Mesh.h"
#include "Slice.h"
#include "Volume.h"

#include <plugins/grid/GridValues.h>
#include <plugins/grid/WordForm.h>
#include <plugins/picture/PictureValues.h>

namespace Quorl
{

template <>
struct VValueTrait<Volumes::Volume> : Maps::NotReadable<Volumes::Volume>
{
    static string Text(const Volumes::Volume& volume)
    {
        return "volume of " + Maps::sizeText(volume.counts()[0], volume.counts()[1]) + " x " +
               std::to_string(volume.counts()[2]);
    }
};

template <>
struct VValueTrait<Volumes::Mesh> : Maps::NotReadable<Volumes::Mesh>
{
    static string Text(const Volumes::Mesh& mesh)
    {
        return "mesh of " + std::to_string(mesh.triangles().size()) + " triangles";
    }
};

template <>
struct VValueTrait<Maps::Raster<float>> : Maps::NotReadable<Maps::Raster<float>>
{
    static string Text(const Maps::Raster<float>& raster)
    {
        return "raster of " + Maps::sizeText(raster.width(), raster.height());
    }
};

template <>
struct VValueTrait<Volumes::Axis> : Maps::WordForm<Volumes::Axis, Volumes::kAxisWords>
{
};

} // namespace Quorl
