#include "VolumeObjects.h"

#include "Isosurface.h"
#include "MeshFile.h"
#include "MeshParts.h"
#include "NiftiFile.h"
#include "Rendering.h"
#include "Threshold.h"
#include "VolumeSmoothing.h"

namespace Volumes
{

bool VolumeReader::update(Quorl::VRequest& request, double /*precision*/)
{
    volume_.set(request, readNifti(file_(request)));
    return true;
}

bool VolumeSlicer::update(Quorl::VRequest& request, double /*precision*/)
{
    const Raster<float> values =
        cut(volumeIn_(request), axis_(request), position_(request), step_(request));
    picture_.set(request, inGrey(values, low_(request), high_(request)));
    values_.set(request, values);
    return true;
}

bool VolumeThreshold::update(Quorl::VRequest& request, double /*precision*/)
{
    kept_.set(request,
              threshold(volumeIn_(request), low_(request), high_(request), outside_(request)));
    return true;
}

bool VolumeSmoother::update(Quorl::VRequest& request, double /*precision*/)
{
    smoothed_.set(request, smooth(volumeIn_(request), sigma_(request)));
    return true;
}

SurfaceFinder::SurfaceFinder(const std::string& wantedName, int givenPriority,
                             const Quorl::RefPtr<Quorl::VCreationPreferences>& wanted)
    : VObject(wantedName, givenPriority, wanted), ply_(new MeshSaver(".ply", writePly)),
      obj_(new MeshSaver(".obj", writeObj))
{
    addSaver("PLY", ply_);
    addSaver("OBJ", obj_);
}

bool SurfaceFinder::update(Quorl::VRequest& request, double /*precision*/)
{
    const Mesh surface =
        largestParts(isosurface(volumeIn_(request), level_(request)), parts_(request));
    surface_.set(request, surface);
    ply_->result = obj_->result = surface;
    return true;
}

bool SurfaceRenderer::update(Quorl::VRequest& request, double /*precision*/)
{
    const Camera camera{azimuth_(request), elevation_(request), roll_(request),
                        fieldOfView_(request), zoom_(request)};
    const Lamp lamp{lampAzimuth_(request), lampElevation_(request), ambient_(request),
                    gloss_(request), occlusion_(request)};
    const Look look{Maps::decode(colour_(request)), Maps::decode(background_(request)),
                    width_(request), height_(request)};
    picture_.set(request, render(surface_(request), camera, lamp, look));
    return true;
}

} // namespace Volumes
