"""What the makers of models and textures share: recipes found by name."""


def recipes_of(*modules):
    """The public functions of modules by name, in the order they stand in; two of one name are an error."""
    recipes = {}
    for module in modules:
        for name, value in vars(module).items():
            if callable(value) and getattr(value, "__module__", "") == module.__name__ and not name.startswith("_"):
                if name in recipes:
                    raise ValueError(f"{name} is made in {recipes[name].__module__} and in {module.__name__}")
                recipes[name] = value
    return recipes


def chosen(recipes, names):
    """The recipes of these names, or all without a name; ends the program with a list if one is unknown."""
    unknown = set(names) - set(recipes)
    if unknown:
        raise SystemExit(f"nothing is named {', '.join(sorted(unknown))}; there are: {', '.join(recipes)}")
    return [recipe for name, recipe in recipes.items() if not names or name in names]
