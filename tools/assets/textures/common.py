"""The maps that most recipes return."""

from picture import Picture, normals_from_height


def stored(reflectance):
    """Recipes say how much light a surface gives back; files hold it nearly as a screen does."""
    return Picture([channel.power(0.58) for channel in reflectance.channels])


def maps_of(diffuse, height, strength, specular=None, emissive=None, normal_size=None, specular_size=128):
    maps = {"Diffuse": (stored(diffuse), "DXT1")}
    normal = normals_from_height(height.resized(normal_size or height.n), strength)
    maps["Normal"] = (normal, "DXT1")
    if specular is not None:
        maps["Specular"] = (Picture.grey(specular).resized(min(specular_size, specular.n)), "DXT1")
    if emissive is not None:
        # Glow fades smoothly into black, where compression would show steps.
        maps["Emissive"] = (emissive.resized(min(128, emissive.n)), "A8R8G8B8")
    return maps
