// Mean and Gaussian curvature with VTK: bench_vtk CUTS
#include <vtkCellArray.h>
#include <vtkCurvatures.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

#include <cstdlib>

#include "bumpy_sphere.h"
#include "measure.h"

namespace {

void fill(vtkPolyData* mesh, const talvek::bench::Surface& surface) {
    const vtkNew<vtkPoints> points;
    for (std::size_t i = 0; i < surface.positions.size(); i += 3) {
        points->InsertNextPoint(&surface.positions[i]);
    }
    const vtkNew<vtkCellArray> faces;
    for (std::size_t i = 0; i < surface.faces.size(); i += 3) {
        faces->InsertNextCell({surface.faces[i], surface.faces[i + 1], surface.faces[i + 2]});
    }
    mesh->SetPoints(points);
    mesh->SetPolys(faces);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_vtk CUTS\n");
        return 2;
    }
    const vtkNew<vtkPolyData> mesh;
    fill(mesh, talvek::bench::makeBumpySphere(std::atoi(argv[1])));
    const vtkNew<vtkCurvatures> curvatures;
    curvatures->SetInputData(mesh);
    talvek::bench::measure("curvature", [&] {
        curvatures->SetCurvatureTypeToMean();
        curvatures->Update();
        curvatures->SetCurvatureTypeToGaussian();
        curvatures->Update();
    });
    return 0;
}
